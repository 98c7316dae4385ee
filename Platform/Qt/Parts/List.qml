import QtQuick

// A list, of which there is no more than what is near: assistive technology turns its pages.
View {
    id: list

    Accessible.onScrollDownAction: list.turn(1)
    Accessible.onScrollUpAction: list.turn(-1)
}
