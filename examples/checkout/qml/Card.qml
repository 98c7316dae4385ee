import QtQuick

// A surface with things below each other, all as wide as it allows (`inner`).
Rectangle {
    id: card

    default property alias content: column.data
    property alias spacing: column.spacing
    property int padding: Look.space
    readonly property real inner: width - 2 * padding

    implicitHeight: column.height + 2 * padding
    radius: Look.radius
    color: Look.card
    border { color: Look.rule; width: Look.hair }

    Column {
        id: column

        x: card.padding
        y: card.padding
        width: card.inner
        spacing: Look.space
    }
}
