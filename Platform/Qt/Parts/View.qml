import QtQuick
import Korvane.Parts 1.0

// An item that assistive technology can hear of.
ViewItem {
    Accessible.ignored: !told
}
