// A key drawn as a small keycap: its label on a rounded cap with a faint shadow below, and the key's
// full name as its tooltip.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Item {
    id: root
    property string text
    property string name    // "Escape", "Left Command": the tooltip, and what a screen reader says
    property bool isEnabled: true
    property real minWidth: 24
    property real minHeight: 20

    implicitWidth: Math.max(minWidth, label.implicitWidth) + 8
    implicitHeight: Math.max(minHeight, label.implicitHeight)

    Accessible.role: Accessible.StaticText
    Accessible.name: name
    HoverHandler { id: hover }
    ToolTip.visible: hover.hovered && name.length > 0
    ToolTip.delay: 500
    ToolTip.text: name

    Rectangle {
        objectName: "keycapShadow"
        width: root.width
        height: root.height
        y: 0.5
        radius: 4
        color: Qt.rgba(0, 0, 0, root.isEnabled ? 0.1 : 0.05)
    }
    Rectangle {
        anchors.fill: parent
        radius: 4
        color: palette.base
        opacity: root.isEnabled ? 1 : 0.5
    }
    Rectangle {
        anchors.fill: parent
        radius: 4
        color: "transparent"
        border.width: 1
        border.color: palette.mid
        opacity: root.isEnabled ? 1 : 0.5
    }
    Text {
        id: label
        objectName: "keycapLabel"
        anchors.centerIn: parent
        text: root.text
        textFormat: Text.PlainText
        font.pixelSize: Theme.keycapPixelSize(root.text)
        font.weight: Font.Medium
        color: root.isEnabled ? palette.text : Theme.secondaryText
    }
}
