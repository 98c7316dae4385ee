import QtQuick
import QtQuick.Controls.Basic

// A button: filled, or only text where it is quiet.
Button {
    id: action

    property bool quiet: false
    property bool compact: false

    implicitHeight: Math.max(Look.control, label.implicitHeight + 2 * Look.gap)
    implicitWidth: action.compact ? Look.control : label.implicitWidth + 2 * Look.margin
    leftPadding: compact ? 0 : Look.space
    rightPadding: leftPadding
    opacity: enabled ? 1 : Look.faded
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Accessible.onPressAction: clicked()
    onPressed: Look.byKeys = false

    contentItem: Text {
        id: label

        text: action.text
        color: action.quiet ? Look.accent : Look.accentInk
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.Wrap
        font { pixelSize: action.compact ? Look.title : Look.heading; weight: Font.DemiBold }
    }
    background: Rectangle {
        radius: Look.radius
        color: action.quiet ? (action.down ? Look.chosen : "transparent") : (action.down ? Look.pressed : Look.accent)

        Behavior on color { ColorAnimation { duration: Look.glide } }
    }

    FocusRing { shown: action.visualFocus }
}
