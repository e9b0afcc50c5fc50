// The prominent header button: filled with the accent colour, as the window's main action.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Button {
    id: control

    leftPadding: 12
    rightPadding: 12
    topPadding: 5
    bottomPadding: 5
    // Clicks leave the keyboard focus alone, so the keys typed next are not taken by the button.
    focusPolicy: Qt.TabFocus

    contentItem: Label {
        text: control.text
        font: control.font
        color: palette.highlightedText
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
    }
    background: Rectangle {
        implicitWidth: 100
        implicitHeight: 26
        radius: 5
        color: control.down ? Qt.darker(palette.highlight, 1.2) : palette.highlight
        border.width: control.visualFocus ? 2 : 0
        border.color: Qt.darker(palette.highlight, 1.6)
    }
    FocusRing {}
}
