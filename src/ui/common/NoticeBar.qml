// A failure the user must know of: the text, selectable so that a path can be copied, and at most
// one button for what to do about it. Hidden while there is nothing to say.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Rectangle {
    id: root
    property string text
    property string actionTitle
    signal actionRequested()

    visible: text !== ""
    implicitHeight: row.implicitHeight + 12
    color: Theme.noticeBackground

    RowLayout {
        id: row
        anchors.fill: parent
        anchors.leftMargin: Theme.padding
        anchors.rightMargin: Theme.padding
        anchors.topMargin: 6
        anchors.bottomMargin: 6
        spacing: 8
        TextEdit {
            objectName: "noticeText"
            Layout.fillWidth: true
            text: root.text
            textFormat: TextEdit.PlainText
            readOnly: true
            selectByMouse: true
            wrapMode: TextEdit.Wrap
            font: Theme.subheadline
            color: Theme.noticeText
            Accessible.role: Accessible.StaticText
            Accessible.name: root.text
        }
        Button {
            objectName: "noticeButton"
            visible: root.actionTitle !== ""
            text: root.actionTitle
            onClicked: root.actionRequested()
            FocusRing {}
        }
    }
}
