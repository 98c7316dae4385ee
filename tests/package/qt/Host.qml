import QtQuick
import Korvane 1.0

Window {
    KorvaneHost {
        anchors.fill: parent
        textScale: 1.5
        onActiveChanged: console.info(active)
    }
}
