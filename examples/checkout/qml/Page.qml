import QtQuick
import QtQuick.Layouts

// What the shop's pages share: a title, two parts that stand below or beside each other and scroll, and a foot that does not.
FocusScope {
    id: page

    required property string title
    required property bool lying
    property bool hasBack: false
    property string backObject: ""
    property alias first: left.data
    property alias second: right.data
    property alias foot: foot
    // Has the keys when the page opens.
    property Item start: foot.action

    readonly property bool open: visible && enabled
    readonly property Item focused: Window.activeFocusItem
    readonly property real columnWidth: lying ? (width - 3 * Look.margin) / 2 : width - 2 * Look.margin

    signal back

    onOpenChanged: {
        if (!open) return
        pane.contentY = 0
        start.forceActiveFocus(Look.byKeys ? Qt.TabFocusReason : Qt.OtherFocusReason)
    }
    onFocusedChanged: if (open && focused) pane.show(focused)

    Flickable {
        id: pane

        function show(item) {
            let above = item
            while (above && above !== contentItem) above = above.parent
            if (!above) return
            const top = item.mapToItem(contentItem, 0, 0).y
            const lowest = Math.max(0, contentHeight - height)
            if (top < contentY) contentY = Math.max(0, top - Look.space)
            else if (top + item.height > contentY + height) contentY = Math.min(lowest, top + item.height + Look.space - height)
        }

        anchors { left: parent.left; right: parent.right; top: parent.top; bottom: foot.top }
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
            Words {
                Layout.fillWidth: true
                text: page.title
                font { pixelSize: Look.title; weight: Font.DemiBold }
                Accessible.role: Accessible.Heading
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

    Foot {
        id: foot

        lying: page.lying
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: implicitHeight
    }
}
