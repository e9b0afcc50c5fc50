// The list window's footer: the settings button with its popover, the ordering hint and the count.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Item {
    id: root
    property string summary
    // How the list is ordered and undone from the keyboard.
    property string keysHint

    implicitHeight: row.implicitHeight + 16

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.leftMargin: Theme.padding
        anchors.rightMargin: Theme.padding
        anchors.topMargin: 8
        anchors.bottomMargin: 8
        IconButton {
            id: settingsButton
            objectName: "settingsButton"
            iconName: "gear"
            iconColor: Theme.secondaryText
            tooltip: qsTr("Settings")
            showsTooltip: !settings.visible
            onClicked: settings.toggle()
        }
        Label {
            objectName: "orderingHint"
            text: qsTr("Drag to reorder \u2022 First match wins")
            font: Theme.caption
            color: Theme.secondaryText
            HoverHandler { id: hintHover }
            ToolTip.visible: hintHover.hovered
            ToolTip.delay: 500
            ToolTip.text: root.keysHint
        }
        Item { Layout.fillWidth: true }
        Label {
            objectName: "activeCount"
            text: root.summary
            font: Theme.caption
            color: Theme.secondaryText
        }
    }
    // A popover of its own above the gear: the panel is taller than the window at its smallest.
    // Pressing the gear again, Escape, or a click elsewhere closes it.
    PopoverWindow {
        id: settings
        objectName: "settingsPopover"
        anchorItem: settingsButton
        edge: PopoverWindow.Above
        width: panel.implicitWidth
        height: panel.implicitHeight
        color: systemPalette.window

        SystemPalette { id: systemPalette }
        SettingsPanel {
            id: panel
            objectName: "settingsPanel"
            anchors.fill: parent
            visible: settings.visible  // so that it refreshes at each opening
            background: Rectangle {
                color: "transparent"
                border.color: systemPalette.mid
            }
            onDismissRequested: settings.close()
        }
    }
}
