import QtQuick
import QtQuick.Layouts

// What the shop's pages share: a title, and two parts that stand below or beside each other and scroll.
Flickable {
    id: page

    required property string title
    required property bool lying
    property bool hasBack: false
    property string backObject: ""
    property alias first: left.data
    property alias second: right.data

    readonly property real columnWidth: lying ? (width - 3 * Look.margin) / 2 : width - 2 * Look.margin

    signal back

    contentWidth: width
    contentHeight: Math.max(left.y + left.height, right.y + right.height) + Look.space
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    RowLayout {
        id: head

        x: Look.margin
        y: Look.small
        width: page.width - 2 * Look.margin
        height: Math.max(Look.control, implicitHeight)
        spacing: Look.tiny

        Action {
            objectName: page.backObject
            Layout.leftMargin: -Look.space
            visible: page.hasBack
            quiet: true
            compact: true
            text: "‹"
            Accessible.name: "Back"
            onClicked: page.back()
        }
        Text {
            Layout.fillWidth: true
            text: page.title
            color: Look.text
            wrapMode: Text.Wrap
            font { pixelSize: Look.title; weight: Font.DemiBold }
        }
    }

    Column {
        id: left

        x: Look.margin
        y: head.y + head.height + Look.gap
        width: page.columnWidth
        spacing: Look.gap
    }

    Column {
        id: right

        x: page.lying ? left.x + left.width + Look.margin : left.x
        y: page.lying ? left.y : left.y + left.height + Look.space
        width: page.columnWidth
        spacing: Look.gap
    }
}
