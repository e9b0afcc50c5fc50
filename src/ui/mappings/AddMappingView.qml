// The add/edit mapping sheet: record a source key, choose Block or Remap, record the target and,
// optionally, the key sent when the source is pressed alone.
// Escape cancels; Return runs the primary button while it is enabled.
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Popup {
    id: sheet
    // Set by the list window while the sheet is shown; it goes null just before the sheet goes.
    required property AddMappingController controller

    parent: Overlay.overlay
    anchors.centerIn: parent
    width: 400
    height: 390
    modal: true
    focus: true
    padding: Theme.padding
    closePolicy: Popup.CloseOnEscape
    onClosed: if (controller) controller.cancel()
    background: SheetBackground {}

    contentItem: ColumnLayout {
        objectName: "mappingSheet"
        spacing: 20
        focus: true
        Keys.onReturnPressed: if (sheet.controller?.canSave) sheet.controller.save()
        Keys.onEnterPressed: if (sheet.controller?.canSave) sheet.controller.save()

        Label {
            objectName: "sheetTitle"
            text: sheet.controller?.title ?? ""
            font: Theme.headline
        }
        ColumnLayout {
            Layout.fillHeight: false  // the free height goes to the button row alone
            spacing: 8
            Label {
                text: qsTr("Source Key")
                font: Theme.subheadline
                color: Theme.secondaryText
            }
            KeyRecorderView {
                objectName: "sourceRecorder"
                Layout.fillWidth: true
                field: sheet.controller?.sourceField ?? null
            }
        }
        ColumnLayout {
            Layout.fillHeight: false  // the free height goes to the button row alone
            spacing: 8
            Label {
                text: qsTr("Target Action")
                font: Theme.subheadline
                color: Theme.secondaryText
            }
            SegmentedControl {
                objectName: "targetTypeControl"
                titles: sheet.controller?.targetTypeTitles ?? []
                currentIndex: sheet.controller?.targetType ?? AddMappingController.Remap
                onActivated: (index) => sheet.controller.targetType = index
                Accessible.name: qsTr("Action")
            }
            Label {
                objectName: "blockCaption"
                Layout.topMargin: 4
                visible: sheet.controller?.targetType === AddMappingController.Block
                text: qsTr("The source key will be completely disabled.")
                font: Theme.caption
                color: Theme.secondaryText
            }
            KeyRecorderView {
                objectName: "targetRecorder"
                Layout.fillWidth: true
                visible: sheet.controller?.targetType === AddMappingController.Remap
                field: sheet.controller?.targetField ?? null
            }
        }
        ColumnLayout {
            Layout.fillHeight: false  // the free height goes to the button row alone
            spacing: 8
            Label {
                text: qsTr("When Pressed Alone")
                font: Theme.subheadline
                color: Theme.secondaryText
            }
            KeyRecorderView {
                objectName: "aloneRecorder"
                Layout.fillWidth: true
                field: sheet.controller?.aloneField ?? null
            }
        }
        // Takes the free height and keeps its buttons at the bottom.
        RowLayout {
            Layout.fillHeight: true
            Item { Layout.fillWidth: true; Layout.fillHeight: true }  // lets the row grow
            Button {
                objectName: "cancelButton"
                Layout.alignment: Qt.AlignBottom
                text: qsTr("Cancel")
                onClicked: sheet.controller.cancel()
                FocusRing {}
            }
            ProminentButton {
                objectName: "primaryButton"
                Layout.alignment: Qt.AlignBottom
                text: sheet.controller?.primaryTitle ?? ""
                enabled: sheet.controller?.canSave ?? false
                onClicked: sheet.controller.save()
            }
        }
    }
}
