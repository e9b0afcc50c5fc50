// A key recorder field: the chosen key as glyphs, and buttons to clear it, pick it from the
// catalogue or record it from the keyboard. Leaving the screen ends a recording under way, as Cancel does.
// Below, while there is one, why Record did not start, with the way to the instructions.
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Item {
    id: root
    property KeyRecorderField field

    readonly property bool recording: field !== null && field.isRecording

    implicitWidth: row.implicitWidth + 16
    implicitHeight: column.implicitHeight + 16

    // Gone from the screen with the item, its sheet or its window (closing a window hides it).
    readonly property bool onScreen: visible && Window.visibility !== Window.Hidden
    onOnScreenChanged: if (!onScreen && field) field.stopRecording()
    Component.onDestruction: if (field) field.stopRecording()

    Rectangle {
        objectName: "recorderFrame"
        anchors.fill: parent
        radius: 6
        color: root.recording ? Qt.rgba(palette.highlight.r, palette.highlight.g, palette.highlight.b, 0.1) : "transparent"
        border.width: root.recording ? 2 : 1
        border.color: root.recording ? palette.highlight : Qt.rgba(0.5, 0.5, 0.5, 0.3)
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        anchors.margins: 8
        // Buttons as wide as their titles, as on a Mac, leaving the text the room for its placeholder.
        RowLayout {
            id: row
            Layout.fillWidth: true

            Label {
                objectName: "recorderText"
                Layout.fillWidth: true
                horizontalAlignment: Text.AlignLeft
                elide: Text.ElideRight
                text: root.field ? root.field.text : ""
                color: root.field && (root.field.hasKey || root.field.isRecording) ? palette.text : Theme.secondaryText
            }
            Button {
                objectName: "clearButton"
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                visible: root.field !== null && root.field.hasKey
                flat: true
                text: qsTr("Clear")
                onClicked: root.field.clear()
                FocusRing {}
            }
            Button {
                id: pickButton
                objectName: "pickButton"
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                text: qsTr("Pick...")
                onClicked: pickerPopup.openAtAnchor()

                // A popover of its own: the picker is wider than the sheet that holds the field.
                PopoverWindow {
                    id: pickerPopup
                    objectName: "pickerPopup"
                    anchorItem: root
                    width: pickerSlot.implicitWidth + 24
                    height: pickerSlot.implicitHeight + 24
                    color: systemPalette.window

                    SystemPalette { id: systemPalette }
                    Rectangle {
                        anchors.fill: parent
                        color: "transparent"
                        border.color: systemPalette.mid
                    }
                    // Built afresh at each opening, so the picker starts on its first tab with no search
                    // (its search field takes the keyboard). A Repeater of at most one rather than a
                    // Loader: Qt 6.4's Loader cannot create a component of a bound file.
                    Column {
                        id: pickerSlot
                        x: 12
                        y: 12
                        Repeater {
                            model: pickerPopup.visible ? 1 : 0
                            KeyPickerView {
                                field: root.field
                                onPicked: pickerPopup.close()
                            }
                        }
                    }
                }
                FocusRing {}
            }
            Button {
                objectName: "recordButton"
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                text: root.recording ? qsTr("Cancel") : qsTr("Record")
                onClicked: root.field.toggleRecording()
                FocusRing {}
            }
        }
        RowLayout {
            objectName: "recorderProblem"
            Layout.fillWidth: true
            visible: root.field !== null && root.field.problem !== ""
            Label {
                Layout.fillWidth: true
                text: root.field ? root.field.problem : ""
                wrapMode: Text.WordWrap
                font: Theme.subheadline
                color: Theme.noticeText
            }
            Button {
                objectName: "permissionHelpButton"
                implicitWidth: implicitContentWidth + leftPadding + rightPadding
                text: root.field ? root.field.permissionHelpTitle : ""
                onClicked: root.field.showPermissionHelp()
                FocusRing {}
            }
        }
    }
}
