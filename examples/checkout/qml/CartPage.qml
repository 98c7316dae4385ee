import QtQuick
import QtQuick.Layouts

Page {
    id: page

    required property var shop

    title: "Kettle & Pine"

    first: Card {
        width: parent.width

        Repeater {
            model: page.shop.lines

            Line {
                required property var modelData

                width: parent.width
                name: modelData.name
                detail: modelData.detail
                price: modelData.price
                colour: modelData.colour
            }
        }
    }

    second: [
        RowLayout {
            width: parent.width

            Text {
                Layout.fillWidth: true
                text: "Total"
                color: Look.text
                font { pixelSize: Look.heading; weight: Font.DemiBold }
            }
            Text {
                text: page.shop.total
                color: Look.text
                font { pixelSize: Look.heading; weight: Font.DemiBold }
            }
        },
        Action {
            objectName: "toCard"
            width: parent.width
            text: "Go to payment"
            onClicked: page.shop.toCard()
        },
        Text {
            width: parent.width
            text: "Nothing is sold here: this shop shows how an app pays through Korvane, with cards that are no cards."
            color: Look.quiet
            wrapMode: Text.Wrap
            font.pixelSize: Look.note
        }
    ]
}
