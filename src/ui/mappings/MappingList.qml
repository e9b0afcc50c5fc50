// The ordered mapping list: one row per mapping, single selection, Delete or Backspace removes the
// selected row, Return edits it, and dragging a row drops it before another.
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Orvane 1.0

ListView {
    id: list
    required property MappingListModel mappings
    // The row being dragged, and how far the pointer has moved since the press.
    property int dragRow: -1
    property real dragOffset: 0
    readonly property real rowHeight: 28
    // Where the dragged row would go, as a position in the list before the move (0…count).
    readonly property int dropDestination: dragRow < 0 ? -1 : mappings.destinationFor(dragRow, Math.round(dragOffset / rowHeight))

    function finishDrag(commit) {
        const row = dragRow
        const destination = dropDestination
        dragRow = -1
        dragOffset = 0
        if (commit) mappings.move([row], destination)
    }

    model: mappings
    clip: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    topMargin: 6
    bottomMargin: 6
    ScrollBar.vertical: ScrollBar {}
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Key mappings")

    Keys.onUpPressed: mappings.selectedRow = Math.max(0, mappings.selectedRow - 1)
    Keys.onDownPressed: mappings.selectedRow = Math.min(count - 1, mappings.selectedRow + 1)
    Keys.onDeletePressed: mappings.removeSelected()
    Keys.onReturnPressed: mappings.editSelected()
    Keys.onEnterPressed: mappings.editSelected()
    Keys.onPressed: (event) => {
        if (event.key !== Qt.Key_Backspace) return
        mappings.removeSelected()
        event.accepted = true
    }
    Connections {
        target: list.mappings
        function onSelectedRowChanged() {
            if (list.mappings.selectedRow >= 0) list.positionViewAtIndex(list.mappings.selectedRow, ListView.Contain)
        }
    }

    delegate: MappingRowView {
        id: row
        required property int index
        required property string mappingId
        objectName: "mappingRow" + index
        x: 8
        width: ListView.view.width - 16
        height: list.rowHeight
        isSelected: index === list.mappings.selectedRow
        isAlternate: index % 2 === 1
        showsFocus: list.activeFocus
        z: index === list.dragRow ? 2 : 1
        transform: Translate { y: row.index === list.dragRow ? list.dragOffset : 0 }
        onSelectRequested: {
            list.mappings.selectedRow = index
            list.forceActiveFocus()
        }
        onToggleRequested: list.mappings.toggle(mappingId)
        onEditRequested: list.mappings.openEditing(mappingId)
        onDeleteRequested: list.mappings.deleteMapping(mappingId)
        onDragMoved: (offset) => { list.dragRow = index; list.dragOffset = offset }
        onDragEnded: (commit) => list.finishDrag(commit)
    }

    // Behind the rows: the list's own background (the rows alternate over it).
    Rectangle {
        parent: list
        anchors.fill: parent
        z: -1
        color: palette.base
    }
    // The focus ring while the list itself (not a control in a row) has the keyboard.
    Rectangle {
        parent: list
        anchors.fill: parent
        z: 10
        color: "transparent"
        border.width: 2
        border.color: palette.highlight
        opacity: 0.6
        visible: list.Window.activeFocusItem === list
    }
    Rectangle {
        objectName: "dropIndicator"
        visible: list.dragRow >= 0
        x: 8
        width: list.width - 16
        height: 2
        y: list.dropDestination * list.rowHeight - 1
        z: 3
        color: palette.highlight
    }
}
