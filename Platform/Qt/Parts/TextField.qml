import QtQuick

// A line of text with its insertion point. A line that is too long shows the place where it is edited.
Item {
    id: field

    property alias text: line.text
    property alias font: line.font
    property alias color: line.color
    property int horizontalAlignment: Text.AlignLeft
    property color caretColor
    property real caretPlace: 0
    property bool editing: false
    property bool bordered: false
    property color lineColor
    property real room: 0
    property real corner: 0

    Rectangle {
        anchors.fill: parent
        visible: field.bordered
        color: "transparent"
        radius: Sizes.fieldCorner
        border.width: Sizes.hairline
        border.color: field.lineColor
    }

    Rectangle {
        anchors.fill: parent
        visible: field.editing
        color: "transparent"
        radius: field.bordered ? Sizes.fieldCorner : field.corner
        border.width: Sizes.ringWidth
        border.color: field.caretColor
    }

    Item {
        id: inside

        readonly property real spare: width - line.implicitWidth - Sizes.caretWidth
        readonly property real aligned: spare <= 0 ? 0 : field.horizontalAlignment === Text.AlignHCenter ? spare / 2 : field.horizontalAlignment === Text.AlignRight ? spare : 0
        readonly property real start: spare >= 0 ? aligned : Math.max(spare, Math.min(0, width - field.caretPlace - Sizes.caretWidth))

        x: field.room
        width: parent.width - 2 * field.room
        height: parent.height
        clip: true

        Text {
            id: line

            x: inside.start
            height: parent.height
            textFormat: Text.PlainText
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }

        Rectangle {
            x: inside.start + field.caretPlace
            anchors.verticalCenter: parent.verticalCenter
            width: Sizes.caretWidth
            height: Math.min(parent.height, line.implicitHeight)
            color: field.caretColor
            visible: field.editing

            SequentialAnimation on opacity {
                running: field.editing
                loops: Animation.Infinite
                PropertyAction { value: 1 }
                PauseAnimation { duration: Sizes.caretBeat }
                PropertyAction { value: 0 }
                PauseAnimation { duration: Sizes.caretBeat }
            }
        }
    }
}
