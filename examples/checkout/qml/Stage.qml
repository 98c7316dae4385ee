import QtQuick
import QtQuick.Layouts
import Korvane 1.0

// A phone: the shop's pages, the library's screens over them, and what the system draws over both.
Rectangle {
    id: stage

    required property var shop
    required property bool framed
    // What the device may take, its bezel included.
    required property size room

    readonly property bool lying: framed ? shop.landscape : room.width > room.height
    readonly property int bezel: framed ? Look.bezelWidth : 0
    readonly property int sideCover: framed && lying ? Look.lyingSide : 0
    readonly property int topCover: framed && !lying ? Look.statusBar : 0
    readonly property int bottomCover: !framed ? 0 : lying ? Look.lyingHomeBar : Look.homeBar

    width: screen.width + 2 * bezel
    height: screen.height + 2 * bezel
    radius: framed ? Look.bezelRadius : 0
    color: Look.bezel

    Binding { target: Look; property: "dark"; value: stage.shop.dark }
    Binding { target: Look; property: "textScale"; value: stage.shop.textScale }

    Rectangle {
        id: screen

        objectName: "screen"
        anchors.centerIn: parent
        width: !stage.framed ? stage.room.width : stage.lying ? Math.min(Look.deviceLong, stage.room.width - 2 * stage.bezel) : Look.deviceShort
        height: !stage.framed ? stage.room.height : stage.lying ? Look.deviceShort : Math.min(Look.deviceLong, stage.room.height - 2 * stage.bezel)
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
            // The library's screens have the keys while they stand.
            enabled: !host.active

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
            visible: stage.framed && !stage.lying
            ink: (host.active ? stage.shop.challengeBarDark : stage.shop.dark) ? Look.lightInk : Look.darkInk
        }

        Rectangle {
            anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: Look.small }
            visible: stage.framed
            width: Look.indicatorLength
            height: Look.indicatorWidth
            radius: height / 2
            color: stage.shop.dark ? Look.lightInk : Look.darkInk
            // Seen also on what is as dark, or as light, as it is.
            border { color: stage.shop.dark ? Look.darkInk : Look.lightInk; width: Look.hair }
        }
    }
}
