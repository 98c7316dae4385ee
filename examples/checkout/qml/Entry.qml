import QtQuick
import QtQuick.Controls.Basic

// A field with its name above.
Column {
    id: entry

    required property string label
    required property string value
    property string placeholder: ""
    property string fieldObject: ""
    readonly property alias field: field

    signal edited(string text)

    spacing: Look.tiny

    Text {
        Accessible.ignored: true
        text: entry.label
        color: Look.quiet
        font.pixelSize: Look.note
    }
    TextField {
        id: field

        objectName: entry.fieldObject
        width: parent.width
        implicitHeight: Math.max(Look.control, contentHeight + 2 * Look.gap)
        text: entry.value
        placeholderText: entry.placeholder
        placeholderTextColor: Look.quiet
        color: Look.text
        selectionColor: Look.accent
        selectedTextColor: Look.accentInk
        inputMethodHints: Qt.ImhDigitsOnly
        leftPadding: Look.gap
        rightPadding: Look.gap
        verticalAlignment: TextInput.AlignVCenter
        font.pixelSize: Look.heading
        Accessible.name: entry.label
        // What the shop refuses does not stay.
        onTextEdited: {
            entry.edited(text)
            if (text !== entry.value) text = Qt.binding(() => entry.value)
        }
        onPressed: Look.byKeys = false
        onAccepted: nextItemInFocusChain().forceActiveFocus(Qt.TabFocusReason)

        background: Rectangle {
            radius: Look.radius
            color: Look.field
            border { color: parent.activeFocus ? Look.accent : Look.fieldRule; width: parent.activeFocus ? Look.thin : Look.hair }
        }
    }
}
