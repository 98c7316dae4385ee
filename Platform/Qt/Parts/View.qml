import QtQuick
import Korvane.Parts 1.0

// An item that assistive technology hears of.
ViewItem {
    id: view

    Accessible.role: view.role
    Accessible.name: view.label
    Accessible.checkable: view.checkable
    Accessible.checked: view.checkable && view.chosen
    Accessible.selected: view.chosen
    Accessible.focusable: view.usable
    Accessible.onPressAction: view.press()
    Accessible.onToggleAction: view.press()
}
