import QtQuick
import QtQuick.Layouts

Item {
    id: page

    ColumnLayout {
        anchors.centerIn: parent
        width: parent.width - 2 * Look.margin
        spacing: Look.space

        Item {
            Layout.alignment: Qt.AlignHCenter
            implicitWidth: Look.spinner
            implicitHeight: Look.spinner

            Repeater {
                model: 8

                Rectangle {
                    required property int index

                    readonly property real angle: index * Math.PI / 4

                    x: Look.spinner / 2 + Math.sin(angle) * (Look.spinner / 2 - width) - width / 2
                    y: Look.spinner / 2 - Math.cos(angle) * (Look.spinner / 2 - width) - height / 2
                    width: Look.small
                    height: Look.small
                    radius: Look.tiny
                    color: Look.accent
                    opacity: (index + 1) / 8
                }
            }
            RotationAnimator on rotation {
                from: 0
                to: 360
                duration: Look.turn
                loops: Animation.Infinite
                running: page.visible
            }
        }
        Words {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: "Asking your bank"
            font { pixelSize: Look.heading; weight: Font.DemiBold }
        }
        Words {
            Layout.fillWidth: true
            horizontalAlignment: Text.AlignHCenter
            text: "This takes a few seconds."
            color: Look.quiet
        }
    }
}
