// The list window's footer: the settings button with its popover, the ordering hint and the count.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Item {
    id: root
    property string summary

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
            iconColor: palette.placeholderText
            tooltip: qsTr("Settings")
            onClicked: settings.opened ? settings.close() : settings.open()
        }
        Label {
            text: qsTr("Drag to reorder \u2022 First match wins")
            font: Theme.caption
            color: palette.placeholderText
        }
        Item { Layout.fillWidth: true }
        Label {
            objectName: "activeCount"
            text: root.summary
            font: Theme.caption
            color: palette.placeholderText
        }
    }
    // A popover above the gear; pressing the gear again, or the panel itself, closes it.
    Popup {
        id: settings
        parent: settingsButton
        y: -height - 6
        padding: 0
        focus: true
        closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutsideParent
        background: SheetBackground {}
        SettingsPanel {
            objectName: "settingsPanel"
            background: null
            onDismissRequested: settings.close()
        }
    }
}
