import QtQuick

// The line below a table's row.
Item {
    property alias lineColor: line.color

    Rectangle {
        id: line

        y: parent.height - height
        width: parent.width
        height: Sizes.hairline
    }
}
