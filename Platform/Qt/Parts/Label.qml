import QtQuick

// A text of so many lines at most (0: as many as it needs), cut short where it does not fit.
Text {
    property int lines: 1

    textFormat: Text.PlainText
    verticalAlignment: Text.AlignVCenter
    wrapMode: lines === 1 ? Text.NoWrap : Text.Wrap
    maximumLineCount: lines > 0 ? lines : 2147483647
    elide: Text.ElideRight
    Accessible.ignored: true
}
