import QtQuick
import Korvane 1.0

Window {
    KorvaneHost {
        anchors.fill: parent
        textSize: 1.5
        onActiveChanged: console.info(active)
    }
}
