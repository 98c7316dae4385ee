import QtQuick

// What a phone's system shows above every app: the time and the battery.
Item {
    id: bar

    required property color ink

    readonly property int batteryWidth: 25
    readonly property int batteryHeight: 12
    readonly property int batteryRadius: 3
    readonly property real charge: 0.7

    Text {
        anchors { left: parent.left; leftMargin: Look.margin; verticalCenter: parent.verticalCenter }
        text: "9:41"
        color: bar.ink
        font { pixelSize: Look.clock; weight: Font.DemiBold }
    }

    Rectangle {
        anchors { right: parent.right; rightMargin: Look.margin; verticalCenter: parent.verticalCenter }
        width: bar.batteryWidth
        height: bar.batteryHeight
        radius: bar.batteryRadius
        color: "transparent"
        border { color: bar.ink; width: Look.hair }

        Rectangle {
            anchors { left: parent.left; top: parent.top; bottom: parent.bottom; margins: Look.thin }
            width: (parent.width - 2 * Look.thin) * bar.charge
            radius: 1
            color: bar.ink
        }
    }
}
