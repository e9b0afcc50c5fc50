// The keyboard focus ring: a highlight outline just outside a control while it has the focus, with a
// thin inner line of the base colour so that it shows on a highlight-filled control too.
import QtQuick

Rectangle {
    property Item control: parent

    objectName: "focusRing"
    anchors.fill: parent
    anchors.margins: -3
    z: 1
    radius: 7
    color: "transparent"
    border.width: 2
    border.color: palette.highlight
    visible: control !== null && control.activeFocus

    Rectangle {
        anchors.fill: parent
        anchors.margins: 2
        radius: 5
        color: "transparent"
        border.width: 1
        border.color: palette.base
    }
}
