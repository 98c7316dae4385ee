import QtQuick
import QtQuick.Controls.Basic

// A test card to choose; the chosen one says what its cardholder has to know.
RadioDelegate {
    id: choice

    required property string number
    required property string title
    required property string advice
    required property bool chosen

    implicitHeight: words.implicitHeight + 2 * Look.gap
    leftPadding: Look.gap
    rightPadding: Look.gap
    focusPolicy: Qt.StrongFocus
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    onPressed: Look.byKeys = false
    checked: chosen
    indicator: null
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()
    Accessible.name: title + ", " + number
    Accessible.description: advice

    contentItem: Column {
        id: words

        spacing: Look.thin

        Text {
            width: parent.width
            text: choice.title
            color: Look.text
            wrapMode: Text.Wrap
            font { pixelSize: Look.body; weight: choice.chosen ? Font.DemiBold : Font.Normal }
        }
        Text {
            width: parent.width
            text: choice.number
            color: Look.quiet
            wrapMode: Text.Wrap
            font.pixelSize: Look.note
        }
        Text {
            width: parent.width
            visible: choice.chosen
            text: choice.advice
            color: Look.accent
            wrapMode: Text.Wrap
            font.pixelSize: Look.note
        }
    }
    background: Rectangle {
        radius: Look.radius
        color: choice.chosen || choice.down ? Look.chosen : "transparent"
    }

    FocusRing { shown: choice.visualFocus; anchors.margins: 0 }
}
