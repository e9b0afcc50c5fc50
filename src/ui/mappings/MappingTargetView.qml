// The right-hand side of a mapping row: the target's keycaps, or the block sign, then the key sent
// when the source is pressed alone.
pragma ComponentBehavior: Bound
import QtQuick
import Orvane 1.0

Item {
    id: root
    property int targetKind
    property var keycaps: []
    property var keyNames: []            // the full name of each keycap
    property string aloneText
    property bool isEnabled: true
    property bool drawnOnAccent: false   // on the accent colour of a selected row

    implicitWidth: (targetKind === MappingListModel.Block ? block.implicitWidth : keys.implicitWidth) +
                   (alone.visible ? alone.anchors.leftMargin + alone.implicitWidth : 0)
    implicitHeight: Math.max(block.implicitHeight, keys.implicitHeight)

    Row {
        id: keys
        objectName: "targetKeycaps"
        anchors.verticalCenter: parent.verticalCenter
        spacing: 2
        visible: root.targetKind !== MappingListModel.Block
        Repeater {
            model: root.keycaps
            KeycapView {
                required property string modelData
                required property int index
                objectName: "targetKeycap"
                text: modelData
                name: root.keyNames[index] ?? ""
                isEnabled: root.isEnabled
            }
        }
    }
    Row {
        id: block
        objectName: "blockTarget"
        anchors.verticalCenter: parent.verticalCenter
        spacing: 4
        visible: root.targetKind === MappingListModel.Block
        Icon {
            anchors.verticalCenter: parent.verticalCenter
            name: "nosign"
            size: 14
            color: root.drawnOnAccent ? palette.highlightedText : root.isEnabled ? Theme.red : Theme.secondaryText
        }
        Text {
            anchors.verticalCenter: parent.verticalCenter
            text: qsTr("Block")
            font.pixelSize: 11
            font.weight: Font.Medium
            color: root.drawnOnAccent ? palette.highlightedText : Theme.secondaryText
            opacity: root.isEnabled ? 1 : 0.7
        }
    }
    Text {
        id: alone
        objectName: "aloneText"
        anchors.left: root.targetKind === MappingListModel.Block ? block.right : keys.right
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        visible: root.aloneText.length > 0
        text: "\u00B7 " + root.aloneText
        font.pixelSize: 12
        color: root.drawnOnAccent ? palette.highlightedText : Theme.secondaryText
        opacity: root.isEnabled ? 1 : 0.7
    }
}
