// The small coloured tag beside a source keycap telling how the mapping takes effect.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Item {
    id: root
    property string text
    property string colorName      // a system colour of the theme
    property string tooltip

    implicitWidth: label.implicitWidth + 8
    implicitHeight: label.implicitHeight + 2

    Accessible.role: Accessible.StaticText
    Accessible.name: text
    Accessible.description: tooltip

    Rectangle {
        anchors.fill: parent
        radius: 3
        color: Theme[root.colorName] || "gray"
        opacity: 0.7
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
