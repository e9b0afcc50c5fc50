// The small coloured tag beside a source keycap telling how the mapping takes effect.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Item {
    id: root
    property string text
    property string colorName      // a system colour of the theme, drawn in its badge shade
    property string tooltip

    implicitWidth: label.implicitWidth + 8
    implicitHeight: label.implicitHeight + 2

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.description: tooltip

    Rectangle {
        objectName: "badgeFill"
        anchors.fill: parent
        radius: 3
        color: Theme.badgeFill(root.colorName)
    }
    Text {
        id: label
        anchors.centerIn: parent
        text: root.text
        textFormat: Text.PlainText
        font.pixelSize: 9
        font.weight: Font.Medium
        color: "white"
    }
    HoverHandler { id: hover }
    ToolTip.visible: hover.hovered
    ToolTip.delay: 500
    ToolTip.text: tooltip
}
