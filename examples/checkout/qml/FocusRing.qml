import QtQuick

// Around what the keys are at, where keys are used.
Rectangle {
    property bool shown: false

    anchors { fill: parent; margins: -Look.tiny }
    visible: shown
    radius: Look.radius + Look.tiny
    color: "transparent"
    border { color: Look.ring; width: Look.thin }
    z: 1

    onShownChanged: if (shown) Look.byKeys = true
}
