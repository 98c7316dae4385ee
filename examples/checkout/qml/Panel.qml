import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts

// How the device is held and how the screens look.
ColumnLayout {
    id: panel

    required property var shop

    spacing: Look.small

    Text {
        text: "Device"
        color: Look.roomText
        font { pixelSize: Look.roomTitle; weight: Font.DemiBold }
    }
    Button {
        id: turn

        objectName: "turn"
        Layout.fillWidth: true
        implicitHeight: Look.control
        text: panel.shop.landscape ? "Hold upright" : "Lay on its side"
        onClicked: panel.shop.turn()
        onPressed: Look.byKeys = false
        Keys.onReturnPressed: clicked()
        Keys.onEnterPressed: clicked()
        Accessible.onPressAction: clicked()

        contentItem: Text {
            text: turn.text
            color: Look.roomText
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            font { pixelSize: Look.roomBody; weight: Font.Medium }
        }
        background: Rectangle {
            radius: Look.radius
            color: turn.down ? Look.room : Look.roomCard
            border { color: Look.roomRule; width: Look.hair }
        }

        FocusRing { shown: turn.visualFocus }
    }
    Text {
        Layout.topMargin: Look.space
        text: "Look"
        color: Look.roomText
        font { pixelSize: Look.roomTitle; weight: Font.DemiBold }
    }
    Repeater {
        model: panel.shop.themes

        RadioDelegate {
            id: theme

            required property int index
            required property string modelData
            readonly property bool chosen: panel.shop.theme === index

            objectName: "theme:" + index
            Layout.fillWidth: true
            implicitHeight: Look.control
            text: modelData
            focusPolicy: Qt.StrongFocus
            onClicked: panel.shop.theme = index
            onPressed: Look.byKeys = false
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
            checked: chosen
            indicator: null
            Accessible.onPressAction: clicked()
            Accessible.onToggleAction: clicked()

            contentItem: Text {
                text: theme.text
                color: Look.roomText
                verticalAlignment: Text.AlignVCenter
                font { pixelSize: Look.roomBody; weight: theme.chosen ? Font.DemiBold : Font.Normal }
            }
            background: Rectangle {
                radius: Look.radius
                color: theme.chosen ? Look.roomCard : "transparent"
                border { color: Look.roomRule; width: theme.chosen ? Look.hair : 0 }
            }

            FocusRing { shown: theme.visualFocus }
        }
    }
    Text {
        Layout.fillWidth: true
        Layout.topMargin: Look.space
        text: "A payment under way keeps the look with which it began; dark and large text take effect at once."
        color: Look.roomQuiet
        wrapMode: Text.Wrap
        font.pixelSize: Look.roomNote
    }
    Item { Layout.fillHeight: true }
}
