import QtQuick

Page {
    id: page

    required property var shop
    readonly property var result: shop.result

    title: result.title

    first: [
        Rectangle {
            width: Look.mark
            height: Look.mark
            radius: Look.mark / 2
            color: page.result.isPaid ? Look.accent : Look.refused

            Text {
                anchors.centerIn: parent
                text: page.result.isPaid ? "✓" : "×"
                color: Look.accentInk
                font { pixelSize: Look.mark / 2; weight: Font.DemiBold }
            }
        },
        Text {
            width: parent.width
            text: page.result.words
            color: Look.text
            wrapMode: Text.Wrap
            font.pixelSize: Look.body
        },
        Action {
            objectName: "startOver"
            width: parent.width
            text: "Back to the shop"
            onClicked: page.shop.startOver()
        }
    ]

    second: [
        Text {
            width: parent.width
            text: "What the library reported"
            color: Look.quiet
            wrapMode: Text.Wrap
            font.pixelSize: Look.note
        },
        Card {
            width: parent.width
            spacing: Look.gap

            Repeater {
                model: page.result.facts

                Column {
                    required property var modelData

                    width: parent.width
                    spacing: Look.tiny

                    Text {
                        text: modelData.name
                        color: Look.quiet
                        font.pixelSize: Look.note
                    }
                    Text {
                        width: parent.width
                        text: modelData.value
                        color: Look.text
                        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                        font.pixelSize: Look.note
                    }
                }
            }
        }
    ]
}
