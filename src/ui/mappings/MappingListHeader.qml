// The list window's header: the interception switch and the "Add Mapping" button.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Item {
    id: root
    signal addRequested()
    // The switch was turned on or off; what the manager then does shows in the switch.
    signal interceptionRequested(bool on)

    implicitHeight: row.implicitHeight + 2 * Theme.padding

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.margins: Theme.padding
        Switch {
            objectName: "activeSwitch"
            text: TapManager.isRunning ? qsTr("Active") : qsTr("Inactive")
            font: Theme.subheadline
            padding: 0
            checked: TapManager.isRunning
            // Whatever the call did, the switch shows the manager's state afterwards:
            // a start that fails leaves it off.
            onToggled: {
                root.interceptionRequested(checked)
                checked = Qt.binding(() => TapManager.isRunning)
            }
            FocusRing {}
        }
        Item { Layout.fillWidth: true }
        Button {
            objectName: "addMappingButton"
            text: qsTr("Add Mapping")
            icon.source: "image://icon/plus/black"
            icon.color: palette.buttonText
            icon.width: 12
            icon.height: 12
            onClicked: root.addRequested()
            FocusRing {}
        }
    }
}
