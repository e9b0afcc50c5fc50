// The debugger's status line: the instruction while idle, else whether mappings act on what is captured.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

RowLayout {
    id: root
    property int status: DebugViewModel.Instruction
    property string text
    property string iconName

    readonly property color tint: status === DebugViewModel.MappingsActive ? Theme.badgeGreen : Theme.secondaryText

    objectName: "statusLine"
    spacing: 4
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    Icon {
        objectName: "statusIcon"
        visible: root.iconName !== ""
        name: root.iconName
        color: root.tint
        size: statusText.fontInfo.pixelSize
        Layout.alignment: Qt.AlignVCenter
        Accessible.ignored: true
    }
    Label {
        id: statusText
        objectName: "statusText"
        text: root.text
        font: Theme.caption
        color: root.tint
    }
}
