import QtQuick
import QtQuick.Layouts
import Korvane 1.0

// A phone: the shop's pages, the library's screens over them, and what the system draws over both.
Rectangle {
    id: stage

    required property var shop

    readonly property bool lying: shop.landscape
    readonly property int sideCover: lying ? Look.lyingSide : 0
    readonly property int topCover: lying ? 0 : Look.statusBar
    readonly property int bottomCover: lying ? Look.lyingHomeBar : Look.homeBar

    width: screen.width + 2 * Look.bezelWidth
    height: screen.height + 2 * Look.bezelWidth
    radius: Look.bezelRadius
    color: Look.bezel

    Binding { target: Look; property: "dark"; value: stage.shop.dark }
    Binding { target: Look; property: "textScale"; value: stage.shop.textScale }

    Rectangle {
        id: screen

        objectName: "screen"
        anchors.centerIn: parent
        width: stage.lying ? Look.deviceLong : Look.deviceShort
        height: stage.lying ? Look.deviceShort : Look.deviceLong
        color: Look.page
        clip: true

        StackLayout {
            anchors {
                fill: parent
                topMargin: stage.topCover
                bottomMargin: stage.bottomCover
                leftMargin: stage.sideCover
                rightMargin: stage.sideCover
            }
            currentIndex: stage.shop.page

            CartPage { shop: stage.shop; lying: stage.lying }
            CardPage { shop: stage.shop; lying: stage.lying }
            WaitingPage { }
            ResultPage { shop: stage.shop; lying: stage.lying }
        }

        KorvaneHost {
            id: host

            objectName: "host"
            anchors.fill: parent
            dark: stage.shop.dark
            textScale: stage.shop.textScale
            safeAreaTop: stage.topCover
            safeAreaBottom: stage.bottomCover
            safeAreaLeft: stage.sideCover
            safeAreaRight: stage.sideCover
            onActiveChanged: stage.shop.challengeStands(active)
        }

        StatusBar {
            anchors { left: parent.left; right: parent.right; top: parent.top }
            height: stage.topCover
            visible: !stage.lying
            ink: (host.active ? stage.shop.challengeBarDark : stage.shop.dark) ? Look.lightInk : Look.darkInk
        }

        Rectangle {
            anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: Look.small }
            width: Look.indicatorLength
            height: Look.indicatorWidth
            radius: height / 2
            color: stage.shop.dark ? Look.lightInk : Look.darkInk
        }
    }
}
