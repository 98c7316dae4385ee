import QtQuick

// The window: the device, and beside it, where there is room, the panel.
Rectangle {
    id: main

    required property var shop

    readonly property bool hasPanel: width >= Look.deviceShort + Look.panel + 4 * Look.margin

    color: Look.room

    Item {
        id: room

        anchors { left: parent.left; top: parent.top; bottom: parent.bottom; right: panel.left; margins: Look.margin }

        Stage {
            objectName: "stage"
            shop: main.shop
            anchors.centerIn: parent
            scale: Math.min(1, room.width / width, room.height / height)
        }
    }

    Panel {
        id: panel

        shop: main.shop
        visible: main.hasPanel
        width: visible ? Look.panel : 0
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom; margins: main.hasPanel ? Look.margin : 0 }
    }
}
