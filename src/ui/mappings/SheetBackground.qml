// The surface of a sheet: the window colour on rounded corners, with a soft edge and shadow.
import QtQuick

Item {
    Rectangle {
        anchors.fill: parent
        anchors.topMargin: 2
        anchors.bottomMargin: -3
        anchors.leftMargin: -1
        anchors.rightMargin: -1
        radius: 11
        color: Qt.rgba(0, 0, 0, 0.12)
    }
    Rectangle {
        anchors.fill: parent
        radius: 10
        color: palette.window
        border.width: 1
        border.color: palette.mid
    }
}
