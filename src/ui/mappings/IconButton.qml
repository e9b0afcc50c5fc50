// A small borderless button showing only an icon; its tooltip is also its accessible name.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

ToolButton {
    id: root
    property string iconName
    property color iconColor: palette.buttonText
    property string tooltip
    // Off while something the button opened covers the place where the tooltip would be.
    property bool showsTooltip: true
    property real iconSize: 14

    implicitWidth: iconSize + 8
    implicitHeight: iconSize + 6
    padding: 0
    focusPolicy: Qt.StrongFocus
    contentItem: Item {
        Icon {
            anchors.centerIn: parent
            name: root.iconName
            color: root.iconColor
            size: root.iconSize
        }
    }
    Accessible.name: tooltip
    ToolTip.visible: hovered && showsTooltip && tooltip !== ""
    ToolTip.delay: 500
    ToolTip.text: tooltip
    FocusRing {}
}
