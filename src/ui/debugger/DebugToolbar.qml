// The debugger's tools under the list: clear, auto-scroll, the noise filter and the count.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

RowLayout {
    id: root
    property DebugViewModel model

    spacing: 12

    Button {
        objectName: "clearButton"
        text: qsTr("Clear")
        enabled: root.model.count > 0
        focusPolicy: Qt.TabFocus
        onClicked: root.model.clear()
        FocusRing {}
    }
    CheckBox {
        objectName: "autoScrollBox"
        text: qsTr("Auto-scroll")
        checked: root.model.autoScroll
        focusPolicy: Qt.TabFocus
        onToggled: root.model.autoScroll = checked
        FocusRing {}
    }
    CheckBox {
        id: filterBox
        objectName: "filterNoiseBox"
        text: qsTr("Filter noise")
        checked: root.model.filterNoise
        focusPolicy: Qt.TabFocus
        onToggled: root.model.filterNoise = checked
        ToolTip.text: qsTr("Filter out spurious system events (subtype 7, 211, empty flagsChanged)")
        ToolTip.visible: hovered || visualFocus
        ToolTip.delay: Application.styleHints.mousePressAndHoldInterval
        FocusRing {}
    }
    Label {
        objectName: "countText"
        text: root.model.countText
        font: Theme.caption
        color: Theme.secondaryText
    }
}
