// The picker's modifier checkboxes, in the order ⌃ ⌥ ⇧ ⌘, and the choice of the ticked ones alone.
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
        color: palette.placeholderText
    }
    CheckBox {
        objectName: "modControl"
        text: "⌃"
        font.pixelSize: 12
        checked: root.picker.modControl
        onToggled: root.picker.modControl = checked
        FocusRing {}
    }
    CheckBox {
        objectName: "modOption"
        text: "⌥"
        font.pixelSize: 12
        checked: root.picker.modOption
        onToggled: root.picker.modOption = checked
        FocusRing {}
    }
    CheckBox {
        objectName: "modShift"
        text: "⇧"
        font.pixelSize: 12
        checked: root.picker.modShift
        onToggled: root.picker.modShift = checked
        FocusRing {}
    }
    CheckBox {
        objectName: "modCommand"
        text: "⌘"
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
