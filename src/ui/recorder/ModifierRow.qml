// The picker's modifier checkboxes, in the order ⌃ ⌥ ⇧ ⌘ and labelled in the desktop's words, and the
// choice of the ticked ones alone.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

RowLayout {
    id: root
    property KeyPickerModel picker

    spacing: 16

    Label {
        text: qsTr("Modifiers:")
        font.pixelSize: 12
        color: Theme.secondaryText
    }
    CheckBox {
        objectName: "modControl"
        text: root.picker.modifierLabels[0]
        Accessible.name: root.picker.modifierNames[0]
        font.pixelSize: 12
        checked: root.picker.modControl
        onToggled: root.picker.modControl = checked
        FocusRing {}
    }
    CheckBox {
        objectName: "modOption"
        text: root.picker.modifierLabels[1]
        Accessible.name: root.picker.modifierNames[1]
        font.pixelSize: 12
        checked: root.picker.modOption
        onToggled: root.picker.modOption = checked
        FocusRing {}
    }
    CheckBox {
        objectName: "modShift"
        text: root.picker.modifierLabels[2]
        Accessible.name: root.picker.modifierNames[2]
        font.pixelSize: 12
        checked: root.picker.modShift
        onToggled: root.picker.modShift = checked
        FocusRing {}
    }
    CheckBox {
        objectName: "modCommand"
        text: root.picker.modifierLabels[3]
        Accessible.name: root.picker.modifierNames[3]
        font.pixelSize: 12
        checked: root.picker.modCommand
        onToggled: root.picker.modCommand = checked
        FocusRing {}
    }
    Button {
        objectName: "modifiersOnlyButton"
        text: qsTr("Modifiers Only")
        font.pixelSize: 12
        enabled: root.picker.canPickModifiersOnly
        onClicked: root.picker.pickModifiersOnly()
        ToolTip.visible: hovered
        ToolTip.text: qsTr("Hold the ticked modifiers while the source key is held")
        FocusRing {}
    }
}
