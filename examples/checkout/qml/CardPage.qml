import QtQuick

Page {
    id: page

    required property var shop

    title: "Your card"
    hasBack: true
    backObject: "backToCart"
    start: number.field
    onBack: shop.toCart()
    foot {
        text: "Pay " + shop.total
        actionObject: "pay"
        actionEnabled: shop.canPay
        onClicked: shop.pay()
    }

    first: [
        Entry {
            id: number

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
        Words {
            width: parent.width
            text: page.shop.hint
            color: page.shop.hintWarns ? Look.refused : Look.quiet
            font.pixelSize: Look.note
        }
    ]

    second: [
        Words {
            width: parent.width
            text: "Test cards"
            font { pixelSize: Look.heading; weight: Font.DemiBold }
            Accessible.role: Accessible.Heading
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
                    advice: modelData.advice
                    chosen: page.shop.number === modelData.number
                    onClicked: page.shop.choose(modelData.number)
                }
            }
        }
    ]
}
