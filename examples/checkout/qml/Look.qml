pragma Singleton
import QtQuick

// Every size, duration and colour of the shop.
QtObject {
    id: look

    // Set by the stage that shows the shop.
    property bool dark: false
    property real textScale: 1
    // Whether keys rather than fingers move about: then it shows what they are at.
    property bool byKeys: false

    readonly property color page: dark ? "#14171A" : "#FAF8F5"
    readonly property color card: dark ? "#1E2226" : "#FFFFFF"
    readonly property color rule: dark ? "#30363C" : "#E6E1D9"
    readonly property color text: dark ? "#F2EFEA" : "#23282B"
    readonly property color quiet: dark ? "#A7ADB1" : "#626B70"
    readonly property color accent: dark ? "#8FBFA9" : "#2F6B55"
    readonly property color accentInk: dark ? "#0E1613" : "#FFFFFF"
    readonly property color pressed: dark ? "#7AA993" : "#245543"
    readonly property color chosen: dark ? "#223029" : "#E9F1ED"
    readonly property color ring: dark ? "#E8C27A" : "#B4690E"
    readonly property color tile: dark ? "#DCD8D0" : "#F1ECE3"
    readonly property color refused: dark ? "#E39C86" : "#A4492E"
    readonly property color field: dark ? "#191D20" : "#FFFFFF"
    readonly property color fieldRule: dark ? "#6E7780" : "#8C8579"
    readonly property real faded: 0.55

    // The room around the device, which does not turn dark with it.
    readonly property color room: "#DCD8D0"
    readonly property color roomText: "#34393C"
    readonly property color roomCard: "#EEEBE5"
    readonly property color roomRule: "#BDB7AC"
    readonly property color roomQuiet: "#565B5F"
    readonly property color bezel: "#24282B"
    readonly property color lightInk: "#FFFFFF"
    readonly property color darkInk: "#1B1F22"

    readonly property int tiny: 4
    readonly property int small: 8
    readonly property int gap: 12
    readonly property int space: 16
    readonly property int margin: 24
    readonly property int radius: 12
    readonly property int control: 50
    readonly property int swatch: 64
    readonly property int spinner: 44
    readonly property int mark: 64
    readonly property real bannerShape: 140 / 342
    // In letters' heights; a narrower line of the cart has no room for words beside its price.
    readonly property int leastLine: 16
    readonly property real dimmed: 0.8
    readonly property int hair: 1
    readonly property int thin: 2

    readonly property int title: Math.round(26 * textScale)
    readonly property int heading: Math.round(17 * textScale)
    readonly property int body: Math.round(15 * textScale)
    readonly property int note: Math.round(13 * textScale)
    // The panel and the system's bar keep their sizes.
    readonly property int roomTitle: 20
    readonly property int roomBody: 14
    readonly property int roomNote: 12
    readonly property int clock: 15

    readonly property int glide: 180
    readonly property int turn: 1100

    // The device, in points, and what its system covers.
    readonly property int deviceShort: 390
    readonly property int deviceLong: 844
    // A lower window has no room for a device with a bezel.
    readonly property int leastFramed: 640
    readonly property int bezelWidth: 12
    readonly property int bezelRadius: 26
    readonly property int statusBar: 47
    readonly property int homeBar: 34
    readonly property int lyingHomeBar: 21
    readonly property int lyingSide: 47
    readonly property int indicatorLength: 134
    readonly property int indicatorWidth: 5
    readonly property int panel: 260
}
