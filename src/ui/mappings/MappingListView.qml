// The configuration window's content: header with the interception switch, the mapping list (or
// the empty state), and the footer with settings and the active count. Hosted in a 500×400
// window no smaller than minimumWidth × minimumHeight.
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Pane {
    id: root
    readonly property int minimumWidth: 450
    readonly property int minimumHeight: 300

    implicitWidth: 500
    implicitHeight: 400
    padding: 0

    MappingListModel { id: mappings }

    // The window's keys while no sheet is open (the sheet has its own Escape): undo and redo of the
    // list, and closing the window. Qt's Ctrl is the Command key on a Mac.
    Shortcut {
        sequences: ["Ctrl+Z"]
        enabled: mappings.editor === null
        onActivated: mappings.undo()
    }
    Shortcut {
        sequences: ["Ctrl+Shift+Z", "Ctrl+Y"]
        enabled: mappings.editor === null
        onActivated: mappings.redo()
    }
    Shortcut {
        sequences: ["Ctrl+W", "Escape"]
        enabled: mappings.editor === null
        onActivated: root.Window.window.close()
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0
        MappingListHeader {
            Layout.fillWidth: true
            onAddRequested: mappings.openNewMapping()
            onInterceptionRequested: (on) => mappings.setInterception(on)
        }
        MenuSeparator { Layout.fillWidth: true; padding: 0 }
        NoticeBar {
            objectName: "permissionNotice"
            Layout.fillWidth: true
            text: mappings.permissionNotice
            actionTitle: mappings.permissionHelpTitle
            onActionRequested: mappings.showPermissionHelp()
        }
        NoticeBar {
            objectName: "storageNotice"
            Layout.fillWidth: true
            text: mappings.storageNotice
        }
        EmptyMappingsView {
            objectName: "emptyState"
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: mappings.isEmpty
            onAddRequested: mappings.openNewMapping()
        }
        MappingList {
            objectName: "mappingList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            visible: !mappings.isEmpty
            mappings: mappings
        }
        MenuSeparator { Layout.fillWidth: true; padding: 0 }
        MappingListFooter {
            Layout.fillWidth: true
            summary: mappings.activeSummary
            keysHint: mappings.keysHint
        }
    }

    // One sheet at a time, for as long as the model holds its state. A Repeater of at most one
    // rather than a Loader: Qt 6.4's Loader cannot create a component of a bound file.
    Repeater {
        model: mappings.editor !== null ? 1 : 0
        Item {
            AddMappingView {
                controller: mappings.editor
                Component.onCompleted: open()
            }
        }
    }
}
