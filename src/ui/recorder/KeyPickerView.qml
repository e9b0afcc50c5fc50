// The key picker: a search field, category tabs, a grid of keys and, where the field allows them,
// modifier checkboxes. Picking a key writes it into the field and emits picked().
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Item {
    id: root
    property alias field: picker.field
    signal picked()

    implicitWidth: 680
    implicitHeight: column.implicitHeight

    KeyPickerModel {
        id: picker
        onPicked: root.picked()
    }

    ColumnLayout {
        id: column
        anchors.fill: parent
        spacing: 12

        TextField {
            objectName: "searchField"
            Layout.fillWidth: true
            placeholderText: qsTr("Search keys...")
            placeholderTextColor: Theme.secondaryText
            focus: true
            onTextChanged: picker.searchText = text
        }

        CategoryTabs {
            objectName: "categoryTabs"
            Layout.fillWidth: true
            visible: !picker.isSearching
            titles: picker.categoryTitles
            currentIndex: picker.selectedCategory
            onSelected: index => picker.selectedCategory = index
        }

        KeyGrid {
            objectName: "keyGrid"
            Layout.fillWidth: true
            Layout.preferredHeight: 200
            model: picker.keys
            onKeyClicked: keyCode => picker.pick(keyCode)
        }

        ThinDivider {
            objectName: "modifierDivider"
            visible: picker.allowModifiers
        }

        ModifierRow {
            objectName: "modifierRow"
            visible: picker.allowModifiers
            Layout.alignment: Qt.AlignHCenter
            picker: picker
        }
    }
}
