import QtQuick
import Korvane 1.0

Window {
    id: shop

    property string status: "Paying..."

    width: 390
    height: 844
    visible: true

    Text {
        anchors.centerIn: parent
        text: shop.status
    }
    KorvaneHost {
        anchors.fill: parent
        onActiveChanged: console.info(active ? "a screen of the bank stands" : "the bank's screens have gone")
    }
}
