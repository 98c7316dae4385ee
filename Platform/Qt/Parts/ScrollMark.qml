import QtQuick

// Shows for a while how far a scrolled view is.
Item {
    id: mark

    property real contentHeight: 0
    property real viewHeight: 0
    property real viewOffset: 0
    property real topCover: 0
    property real bottomCover: 0
    property real sideCover: 0
    property bool mirrored: false
    property color color
    readonly property bool scrolls: contentHeight > viewHeight + 1

    onViewOffsetChanged: if (scrolls) stay.restart()
    onScrollsChanged: if (scrolls) stay.restart()

    Timer {
        id: stay

        interval: Sizes.scrollMarkStay
    }

    Rectangle {
        readonly property real room: mark.height - mark.topCover - mark.bottomCover - 2 * Sizes.scrollMarkGap
        readonly property real side: mark.sideCover + Sizes.scrollMarkGap

        visible: mark.scrolls
        opacity: stay.running ? 1 : 0
        x: mark.mirrored ? side : mark.width - width - side
        y: mark.topCover + Sizes.scrollMarkGap + (room - height) * Math.min(1, Math.max(0, mark.viewOffset / Math.max(1, mark.contentHeight - mark.viewHeight)))
        width: Sizes.scrollMarkWidth
        height: Math.max(Sizes.scrollMarkLeast, room * mark.viewHeight / Math.max(1, mark.contentHeight))
        radius: width / 2
        color: mark.color

        Behavior on opacity { NumberAnimation { duration: Sizes.scrollMarkFade } }
    }
}
