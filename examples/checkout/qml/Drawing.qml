import QtQuick

// One of the program's drawings, as sharp as the screen.
Image {
    required property string name

    source: "qrc:/drawings/" + name + ".svg"
    sourceSize: Qt.size(width, height)
    fillMode: Image.PreserveAspectFit
    opacity: Look.dark ? Look.dimmed : 1
    Accessible.ignored: true
}
