// One mapping in the list: enabled checkbox, source keycap with its method badge, arrow, target;
// edit and delete buttons while the pointer is over the row. The whole row takes the pointer:
// a press selects, a double click edits, a vertical drag reports its offset for reordering.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Item {
    id: root
    required property string sourceText
    required property string sourceName
    required property bool isEnabled
    required property string badgeText
    required property string badgeColor
    required property string badgeTooltip
    required property int targetKind
    required property var targetKeycaps
    required property var targetKeyNames
    required property string aloneText  // "alone ⎋", or empty
    property bool isSelected: false
    property bool isAlternate: false
    property bool showsFocus: false
    readonly property bool isHovering: hover.hovered
    // Selected in the focused list: drawn on the accent colour, so secondary marks turn light.
    readonly property bool drawnOnAccent: isSelected && showsFocus

    signal toggleRequested()
    signal editRequested()
    signal deleteRequested()
    signal selectRequested()
    // offset: how far the pointer has moved since the press; sceneY: where it is in the window.
    signal dragMoved(real offset, real sceneY)
    signal dragEnded(bool commit)

    implicitWidth: content.implicitWidth + 16
    implicitHeight: 28

    Rectangle {
        anchors.fill: parent
        radius: 5
        color: root.isSelected ? (root.showsFocus ? palette.highlight : Qt.rgba(0, 0, 0, 0.1))
                               : (root.isAlternate ? palette.alternateBase : "transparent")
    }
    HoverHandler { id: hover }
    MouseArea {
        id: area
        property real pressY: 0
        property bool dragging: false
        anchors.fill: parent
        preventStealing: true
        onPressed: (mouse) => { pressY = mapToItem(null, mouse.x, mouse.y).y; dragging = false; root.selectRequested() }
        onPositionChanged: (mouse) => {
            const sceneY = mapToItem(null, mouse.x, mouse.y).y
            const offset = sceneY - pressY
            if (!dragging && Math.abs(offset) < Application.styleHints.startDragDistance) return
            dragging = true
            root.dragMoved(offset, sceneY)
        }
        onReleased: if (dragging) { dragging = false; root.dragEnded(true) }
        onCanceled: if (dragging) { dragging = false; root.dragEnded(false) }
        onDoubleClicked: root.editRequested()
    }
    RowLayout {
        id: content
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8
        anchors.topMargin: 4
        anchors.bottomMargin: 4
        spacing: 12
        CheckBox {
            objectName: "enabledCheckBox"
            padding: 0
            checked: root.isEnabled
            onClicked: root.toggleRequested()
            Accessible.name: qsTr("Enabled")
            FocusRing {}
        }
        Row {
            spacing: 4
            KeycapView {
                objectName: "sourceKeycap"
                text: root.sourceText
                name: root.sourceName
                isEnabled: root.isEnabled
            }
            MethodBadge {
                objectName: "methodBadge"
                anchors.verticalCenter: parent.verticalCenter
                visible: root.isEnabled
                text: root.badgeText
                colorName: root.badgeColor
                tooltip: root.badgeTooltip
            }
        }
        Icon {
            name: "arrow.right"
            size: 12
            color: root.drawnOnAccent ? palette.highlightedText : Theme.secondaryText
        }
        MappingTargetView {
            targetKind: root.targetKind
            keycaps: root.targetKeycaps
            keyNames: root.targetKeyNames
            aloneText: root.aloneText
            isEnabled: root.isEnabled
            drawnOnAccent: root.drawnOnAccent
        }
        Item { Layout.fillWidth: true }
        Row {
            objectName: "rowActions"
            spacing: 8
            // Hidden without leaving the layout, so that appearing never moves what lies under the pointer.
            opacity: root.isHovering ? 1 : 0
            enabled: root.isHovering
            IconButton {
                objectName: "editButton"
                iconName: "pencil"
                iconColor: root.drawnOnAccent ? palette.highlightedText : palette.buttonText
                tooltip: qsTr("Edit mapping")
                onClicked: root.editRequested()
            }
            IconButton {
                objectName: "deleteButton"
                iconName: "trash"
                iconColor: Theme.red
                tooltip: qsTr("Delete mapping")
                onClicked: root.deleteRequested()
            }
        }
    }
}
