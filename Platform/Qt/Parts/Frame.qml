import QtQuick

// What every view can have: a fill, a border, rounded corners, and a shadow, which is made of some rectangles around each
// other, since not every way of drawing has effects.
Rectangle {
    id: frame

    property color strokeColor: "transparent"
    property real strokeWidth: 0
    property color shadowColor: "transparent"
    property real shadowOpacity: 0
    property real shadowRadius: 0
    property rect shadowPath

    color: "transparent"
    antialiasing: radius > 0
    border.width: strokeWidth
    border.color: strokeColor

    Repeater {
        model: frame.shadowOpacity > 0 ? Sizes.shadowLayers : 0

        Rectangle {
            required property int index
            readonly property real spread: frame.shadowRadius * (Sizes.shadowLayers - index) / Sizes.shadowLayers

            x: frame.shadowPath.x - spread
            y: frame.shadowPath.y - spread
            width: frame.shadowPath.width + 2 * spread
            height: frame.shadowPath.height + 2 * spread
            z: -1
            radius: Math.max(0, frame.radius + spread)
            color: frame.shadowColor
            // Together they fade as the square of the way out, from half the opacity at the edge.
            opacity: frame.shadowOpacity / 2 * (2 * index + 1) / (Sizes.shadowLayers * Sizes.shadowLayers)
        }
    }
}
