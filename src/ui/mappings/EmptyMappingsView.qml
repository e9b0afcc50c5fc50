// What the list window shows while there are no mappings: an invitation to add the first one.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Item {
    id: root
    signal addRequested()

    ColumnLayout {
        anchors.centerIn: parent
        width: Math.min(implicitWidth, root.width - 2 * Theme.padding)
        spacing: 16
        Icon {
            Layout.alignment: Qt.AlignHCenter
            name: "keyboard"
            size: 48
            color: Theme.secondaryText
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("No Key Mappings")
            font: Theme.headline
        }
        Label {
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("Click \"Add Mapping\" to remap a key.")
            font: Theme.subheadline
            color: Theme.secondaryText
        }
        ProminentButton {
            objectName: "addFirstMappingButton"
            Layout.alignment: Qt.AlignHCenter
            text: qsTr("Add Your First Mapping")
            onClicked: root.addRequested()
        }
    }
}
