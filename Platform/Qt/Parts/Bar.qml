import QtQuick

// A bar reaches to the window's edges, whatever lies between, and has a line below it.
Item {
    id: bar

    property color color
    property real coverage: 1
    property real above: 0
    property real before: 0
    property real behind: 0
    property color lineColor

    Rectangle {
        x: -bar.before
        y: -bar.above
        width: bar.before + bar.width + bar.behind
        height: bar.above + bar.height
        color: bar.color
        opacity: bar.coverage
    }

    Rectangle {
        x: -bar.before
        y: bar.height - height
        width: bar.before + bar.width + bar.behind
        height: Sizes.hairline
        color: bar.lineColor
    }
}
