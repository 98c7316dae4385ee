import QtQuick

// The one word of the menu over a field.
Rectangle {
    id: menu

    property alias word: label.text
    property alias font: label.font
    property alias ink: label.color
    property color ground

    signal chosen()

    width: label.implicitWidth + 2 * Sizes.menuRoom
    height: Math.max(Sizes.menuHeight, label.implicitHeight)
    radius: Sizes.menuCorner
    color: finger.pressed ? Qt.tint(ground, Qt.alpha(ink, Sizes.menuTouch)) : ground

    Accessible.role: Accessible.MenuItem
    Accessible.name: word
    Accessible.onPressAction: chosen()

    Text {
        id: label

        anchors.centerIn: parent
        textFormat: Text.PlainText
        Accessible.ignored: true
    }

    TapHandler {
        id: finger

        gesturePolicy: TapHandler.ReleaseWithinBounds // what lies behind hears nothing
        onTapped: menu.chosen()
    }
}
