import QtQuick

// Spokes of which one after the other lights up, on a plate.
Item {
    id: spinner

    property color color
    property color plateColor
    property bool running: false
    property int lit: 0
    readonly property real side: Math.min(width, height, Sizes.spinnerSide)

    Rectangle {
        anchors.centerIn: parent
        width: Sizes.spinnerPlate
        height: Sizes.spinnerPlate
        radius: Sizes.spinnerCorner
        color: spinner.plateColor
        border.width: color.a > 0 ? Sizes.hairline : 0
        border.color: Qt.rgba(spinner.color.r, spinner.color.g, spinner.color.b, 0.2)
    }

    Repeater {
        model: Sizes.spinnerSpokes

        Rectangle {
            required property int index

            x: (spinner.width - width) / 2
            y: (spinner.height - spinner.side) / 2
            width: spinner.side / 12
            height: spinner.side / 3.6
            radius: width / 2
            color: spinner.color
            opacity: 1 - 0.85 * ((spinner.lit - index + Sizes.spinnerSpokes) % Sizes.spinnerSpokes) / Sizes.spinnerSpokes
            transform: Rotation {
                origin.x: spinner.side / 24
                origin.y: spinner.side / 2
                angle: index * 360 / Sizes.spinnerSpokes
            }
        }
    }

    NumberAnimation on lit {
        running: spinner.running
        loops: Animation.Infinite
        from: 0
        to: Sizes.spinnerSpokes
        duration: Sizes.spinnerTurn
    }
}
