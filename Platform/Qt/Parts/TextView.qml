import QtQuick

// A text that scrolls.
Item {
    id: view

    property alias text: content.text
    property alias font: content.font
    property alias color: content.color
    property alias horizontalAlignment: content.horizontalAlignment
    property alias topPadding: content.topPadding
    property alias leftPadding: content.leftPadding
    property alias rightPadding: content.rightPadding
    property alias contentHeight: mark.contentHeight
    property alias viewHeight: mark.viewHeight
    property alias viewOffset: mark.viewOffset
    property alias scrollColor: mark.color

    Text {
        id: content

        y: -view.viewOffset
        width: view.width
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        Accessible.ignored: true
    }

    ScrollMark {
        id: mark

        anchors.fill: parent
    }
}
