pragma Singleton
import QtQuick

// Sizes in points, times in milliseconds and shares that parts have in common.
QtObject {
    readonly property real hairline: 1
    readonly property real ringWidth: 2
    readonly property int shadowLayers: 6
    readonly property real fieldCorner: 6
    readonly property real caretWidth: 2
    readonly property int caretBeat: 530
    readonly property real scrollMarkWidth: 3
    readonly property real scrollMarkGap: 3
    readonly property real scrollMarkLeast: 24
    readonly property int scrollMarkStay: 900
    readonly property int scrollMarkFade: 250
    readonly property real menuRoom: 20
    readonly property real menuHeight: 44
    readonly property real menuCorner: 10
    readonly property real menuTouch: 0.25
    readonly property real spinnerSide: 37
    readonly property real spinnerPlate: 84
    readonly property real spinnerCorner: 14
    readonly property int spinnerSpokes: 12
    readonly property int spinnerTurn: 1000
}
