import QtQuick

Page {
    id: page

    required property var shop

    title: "Kettle & Pine"
    foot {
        amount: shop.total
        text: "Go to payment"
        actionObject: "toCard"
        onClicked: shop.toCard()
    }

    first: [
        Drawing {
            visible: !page.lying
            name: "table"
            width: parent.width
            height: width * Look.bannerShape
        },
        Card {
            width: parent.width

            Repeater {
                model: page.shop.lines

                Line {
                    required property var modelData

                    width: parent.width
                    name: modelData.name
                    detail: modelData.detail
                    price: modelData.price
                    picture: modelData.picture
                }
            }
        }
    ]

    second: [
        Drawing {
            visible: page.lying
            name: "table"
            width: parent.width
            height: width * Look.bannerShape
        },
        Words {
            width: parent.width
            text: "Nothing is sold here: this shop shows how an app pays through Korvane, with cards that are no cards."
            color: Look.quiet
            font.pixelSize: Look.note
        }
    ]
}
