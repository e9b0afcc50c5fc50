// The content of the "Key Event Debugger" window: capture control, status, the captured events and their tools.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Pane {
    id: root
    // The view's own state; the window keeps the view, and with it the records, after closing.
    readonly property DebugViewModel model: DebugViewModel {}

    implicitWidth: 550
    implicitHeight: 500
    padding: Theme.padding

    // The window may shrink to the view's minimum, no further.
    Binding { target: root.Window.window; property: "minimumWidth"; value: 500; when: root.Window.window !== null }
    Binding { target: root.Window.window; property: "minimumHeight"; value: 400; when: root.Window.window !== null }

    Connections {
        target: root.Window.window
        function onClosing() { root.model.stopCapture() }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 16

        RowLayout {
            Layout.fillWidth: true
            Label {
                text: qsTr("Key Event Debugger")
                font: Theme.headline
                Accessible.role: Accessible.Heading
            }
            Item { Layout.fillWidth: true }
            CaptureButton {
                objectName: "captureButton"
                text: root.model.captureButtonText
                onClicked: {
                    root.model.toggleCapture()
                    if (root.model.isCapturing) eventList.forceActiveFocus()
                }
            }
        }

        DebugStatusLine {
            Layout.alignment: Qt.AlignHCenter
            status: root.model.status
            text: root.model.statusText
            iconName: root.model.statusIcon
        }

        NoticeBar {
            objectName: "permissionNotice"
            Layout.fillWidth: true
            text: root.model.permissionNotice
            actionTitle: root.model.permissionHelpTitle
            onActionRequested: root.model.showPermissionHelp()
        }

        DebugEventList {
            id: eventList
            Layout.fillWidth: true
            Layout.fillHeight: true
            model: root.model
        }

        DebugToolbar {
            Layout.alignment: Qt.AlignHCenter
            model: root.model
        }
    }
}
