// The settings popover's content: launch at login, the menu-bar icon, the debugger, quit, version.
// It refreshes "Launch at login" from the system each time it comes on screen; dismissRequested()
// asks the host to close the popover (before the debugger window opens).
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Pane {
    id: root
    signal dismissRequested()

    implicitWidth: 250
    padding: Theme.padding

    onVisibleChanged: if (visible) controller.refresh()
    Component.onCompleted: if (visible) controller.refresh()

    SettingsController {
        id: controller
    }

    ColumnLayout {
        anchors.left: parent.left
        anchors.right: parent.right
        spacing: 12

        Label {
            text: qsTr("Settings")
            font: Theme.headline
        }
        CheckBox {
            objectName: "launchAtLoginCheckBox"
            text: qsTr("Launch at login")
            checked: controller.launchAtLogin
            onToggled: controller.launchAtLogin = checked
            FocusRing {}
        }
        TextEdit {
            objectName: "launchAtLoginError"
            Layout.fillWidth: true
            visible: text !== ""
            text: controller.launchAtLoginError
            textFormat: TextEdit.PlainText
            readOnly: true
            selectByMouse: true
            wrapMode: TextEdit.Wrap
            font: Theme.caption
            color: Theme.noticeText
        }
        CheckBox {
            objectName: "showMenuIconCheckBox"
            text: controller.showMenuIconTitle
            checked: controller.showMenuIcon
            onToggled: controller.showMenuIcon = checked
            FocusRing {}
        }
        Label {
            Layout.fillWidth: true
            text: qsTr("When disabled, launch the app to open this window.")
            font: Theme.caption
            color: Theme.secondaryText
            wrapMode: Text.WordWrap
        }
        ThinDivider {}
        Button {
            objectName: "openDebuggerButton"
            text: qsTr("Open Key Event Debugger")
            onClicked: {
                root.dismissRequested();
                controller.openDebug();
            }
            FocusRing {}
        }
        ThinDivider {}
        Button {
            objectName: "quitButton"
            text: qsTr("Quit Orvane")
            onClicked: controller.quit()
            FocusRing {}
        }
        ThinDivider {}
        Label {
            objectName: "versionLabel"
            text: qsTr("Version %1").arg(controller.versionString)
            font: Theme.caption
            color: Theme.secondaryText
        }
    }
}
