import QtQuick

// A line of the cart. Where it is narrow the price stands below the words.
Item {
    id: line

    required property string name
    required property string detail
    required property string price
    required property string picture

    readonly property bool narrow: width < Look.leastLine * Look.body

    Accessible.role: Accessible.StaticText
    Accessible.name: name + ", " + detail + ", " + line.price
    implicitHeight: Math.max(swatch.height, words.height)

    Rectangle {
        id: swatch

        anchors { left: parent.left; verticalCenter: parent.verticalCenter }
        width: Look.swatch
        height: Look.swatch
        radius: Look.radius
        color: Look.tile

        Drawing {
            anchors { fill: parent; margins: Look.tiny }
            name: line.picture
        }
    }
    Column {
        id: words

        anchors { left: swatch.right; right: line.narrow ? parent.right : price.left; leftMargin: Look.gap; rightMargin: line.narrow ? 0 : Look.gap; verticalCenter: parent.verticalCenter }
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
        Text {
            visible: line.narrow
            text: line.price
            color: Look.text
            font.pixelSize: Look.body
        }
    }
    Text {
        id: price

        anchors { right: parent.right; verticalCenter: parent.verticalCenter }
        visible: !line.narrow
        text: line.price
        color: Look.text
        font.pixelSize: Look.body
    }
}
