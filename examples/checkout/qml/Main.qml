import QtQuick

// The window: the device, and beside it, where there is room, the panel. A small window is a device itself.
Rectangle {
    id: main

    required property var shop

    readonly property bool framed: width >= Look.deviceShort + 2 * (Look.bezelWidth + Look.margin) && height >= Look.leastFramed
    readonly property bool hasPanel: framed && width >= Look.deviceShort + Look.panel + 4 * Look.margin
    readonly property int rim: framed ? Look.margin : 0

    color: Look.room

    Item {
        id: room

        anchors { left: parent.left; top: parent.top; bottom: parent.bottom; right: panel.left; margins: main.rim }

        Stage {
            objectName: "stage"
            shop: main.shop
            framed: main.framed
            room: Qt.size(room.width, room.height)
            anchors.centerIn: parent
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
