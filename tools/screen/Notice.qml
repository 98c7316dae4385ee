import QtQuick

// What is wrong with the files, over the whole window; nothing where nothing is.
Rectangle {
    property alias text: words.text

    anchors.fill: parent
    color: "#FFF8E6"
    visible: text !== ""
    z: 1

    Flickable {
        anchors.fill: parent
        anchors.margins: 24
        contentHeight: words.height

        Text {
            id: words

            width: parent.width
            color: "#3B2A00"
            font.pixelSize: 15
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
        }
    }
}
