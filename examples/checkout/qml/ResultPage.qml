import QtQuick

Page {
    id: page

    required property var shop
    readonly property var result: shop.result

    title: result.title
    foot {
        text: result.wayOn
        actionObject: "startOver"
        onClicked: shop.startOver()
    }

    first: [
        Drawing {
            name: page.result.picture
            width: Look.mark
            height: Look.mark
        },
        Words {
            width: parent.width
            text: page.result.words
        }
    ]

    second: [
        Words {
            width: parent.width
            text: "What the library reported"
            color: Look.quiet
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

                    Words {
                        width: parent.width
                        text: modelData.name
                        color: Look.quiet
                        font.pixelSize: Look.note
                    }
                    Words {
                        width: parent.width
                        text: modelData.value
                        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
                        font.pixelSize: Look.note
                    }
                }
            }
        }
    ]
}
