import QtQuick

// Covers all that lies behind.
Rectangle {
}
