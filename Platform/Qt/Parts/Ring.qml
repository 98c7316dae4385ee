import QtQuick

// Shows where the focus is: a line in the accent, between two that set it off from whatever it lies on.
Rectangle {
    id: ring

    property color accent
    property color halo

    color: "transparent"
    border.width: Sizes.ringWidth + 2 * Sizes.hairline
    border.color: halo

    Rectangle {
        anchors.fill: parent
        anchors.margins: Sizes.hairline
        radius: ring.radius - Sizes.hairline
        color: "transparent"
        border.width: Sizes.ringWidth
        border.color: ring.accent
    }
}
