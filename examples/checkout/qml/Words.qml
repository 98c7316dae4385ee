import QtQuick

// A text that is also read out.
Text {
    color: Look.text
    wrapMode: Text.Wrap
    font.pixelSize: Look.body
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
