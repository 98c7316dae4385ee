import QtQuick
import QtQuick.Layouts

// What stays in sight while a page scrolls: the sum, if there is one, and the way on.
Item {
    id: foot

    required property bool lying
    property string amount: ""
    property string text: ""
    property string actionObject: ""
    property bool actionEnabled: true
    readonly property alias action: action

    signal clicked

    implicitHeight: grid.implicitHeight + 2 * Look.gap

    // Reaches under what the system covers.
    Rectangle {
        anchors { fill: parent; leftMargin: -Look.lyingSide; rightMargin: -Look.lyingSide; bottomMargin: -Look.homeBar }
        color: Look.card

        Rectangle {
            width: parent.width
            height: Look.hair
            color: Look.rule
        }
    }
    GridLayout {
        id: grid

        anchors { left: parent.left; right: parent.right; top: parent.top; leftMargin: Look.margin; rightMargin: Look.margin; topMargin: Look.gap }
        columns: foot.lying ? 2 : 1
        columnSpacing: Look.margin
        rowSpacing: Look.small

        RowLayout {
            Layout.fillWidth: true
            visible: foot.amount !== ""

            Words {
                Layout.fillWidth: true
                text: "Total"
                font { pixelSize: Look.heading; weight: Font.DemiBold }
            }
            Words {
                text: foot.amount
                font { pixelSize: Look.heading; weight: Font.DemiBold }
            }
        }
        Action {
            id: action

            objectName: foot.actionObject
            Layout.fillWidth: true
            Layout.preferredWidth: grid.width / 2
            enabled: foot.actionEnabled
            text: foot.text
            onClicked: foot.clicked()
        }
    }
}
