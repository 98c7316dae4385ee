import QtQuick
import QtQuick.Controls.Basic

// A field with its name above.
Column {
    id: entry

    required property string label
    required property string value
    property string placeholder: ""
    property string fieldObject: ""

    signal edited(string text)

    spacing: Look.tiny

    Text {
        text: entry.label
        color: Look.quiet
        font.pixelSize: Look.note
    }
    TextField {
        objectName: entry.fieldObject
        width: parent.width
        implicitHeight: Math.max(Look.control, contentHeight + 2 * Look.gap)
        text: entry.value
        placeholderText: entry.placeholder
        placeholderTextColor: Look.fieldRule
        color: Look.text
        selectionColor: Look.accent
        selectedTextColor: Look.accentInk
        inputMethodHints: Qt.ImhDigitsOnly
        leftPadding: Look.gap
        rightPadding: Look.gap
        verticalAlignment: TextInput.AlignVCenter
        font.pixelSize: Look.heading
        Accessible.name: entry.label
        onTextEdited: entry.edited(text)

        background: Rectangle {
            radius: Look.radius
            color: Look.field
            border { color: parent.activeFocus ? Look.accent : Look.fieldRule; width: parent.activeFocus ? Look.thin : Look.hair }
        }
    }
}
