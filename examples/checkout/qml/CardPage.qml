import QtQuick

Page {
    id: page

    required property var shop

    title: "Your card"
    hasBack: true
    backObject: "backToCart"
    onBack: shop.toCart()

    first: [
        Entry {
            width: parent.width
            label: "Card number"
            value: page.shop.number
            placeholder: "0000 0000 0000 0000"
            fieldObject: "number"
            onEdited: (text) => page.shop.number = text
        },
        Entry {
            width: parent.width
            label: "Good until"
            value: page.shop.expiry
            placeholder: "MM/YY"
            fieldObject: "expiry"
            onEdited: (text) => page.shop.expiry = text
        },
        Text {
            width: parent.width
            text: page.shop.hint
            color: Look.quiet
            wrapMode: Text.Wrap
            font.pixelSize: Look.note
        },
        Action {
            objectName: "pay"
            width: parent.width
            enabled: page.shop.canPay
            text: "Pay " + page.shop.total
            onClicked: page.shop.pay()
        }
    ]

    second: [
        Text {
            width: parent.width
            text: "Test cards"
            color: Look.text
            font { pixelSize: Look.heading; weight: Font.DemiBold }
        },
        Card {
            width: parent.width
            padding: Look.small
            spacing: 0

            Repeater {
                model: page.shop.cards

                CardChoice {
                    required property var modelData

                    objectName: "card:" + modelData.name
                    width: parent.width
                    number: modelData.number
                    title: modelData.title
                    chosen: page.shop.number === modelData.number
                    onClicked: page.shop.choose(modelData.number)
                }
            }
        }
    ]
}
