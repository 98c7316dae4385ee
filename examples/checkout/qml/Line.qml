import QtQuick

// A line of the cart.
Item {
    id: line

    required property string name
    required property string detail
    required property string price
    required property color colour

    implicitHeight: Math.max(swatch.height, words.height)

    Rectangle {
        id: swatch

        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
        width: Look.swatch
        height: Look.swatch
        radius: Look.radius
        color: line.colour
    }
    Column {
        id: words

        anchors { left: swatch.right; right: price.left; leftMargin: Look.gap; rightMargin: Look.gap; verticalCenter: parent.verticalCenter }
        spacing: Look.thin

        Text {
            width: parent.width
            text: line.name
            color: Look.text
            wrapMode: Text.Wrap
            font { pixelSize: Look.body; weight: Font.Medium }
        }
        Text {
            width: parent.width
            text: line.detail
            color: Look.quiet
            wrapMode: Text.Wrap
            font.pixelSize: Look.note
        }
    }
    Text {
        id: price

        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        text: line.price
        color: Look.text
        font.pixelSize: Look.body
    }
}
