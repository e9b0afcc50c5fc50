// The ordered mapping list: one row per mapping, single selection, Delete or Backspace removes the
// selected row, Return edits it, Alt+Up and Alt+Down move it, and dragging a row drops it before
// another (the list scrolls while the row is held near its top or bottom edge).
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Orvane 1.0

ListView {
    id: list
    required property MappingListModel mappings
    // The row being dragged, how far the pointer has moved since the press, and where the list
    // was scrolled then: the row follows the pointer over the rows as the list scrolls under it.
    property int dragRow: -1
    property real dragOffset: 0
    property real dragStartContentY: 0
    readonly property real dragShift: dragOffset + contentY - dragStartContentY
    readonly property real rowHeight: 28
    // Where the dragged row would go, as a position in the list before the move (0…count).
    readonly property int dropDestination: dragRow < 0 ? -1 : mappings.destinationFor(dragRow, Math.round(dragShift / rowHeight))
    // While a row is held within edgeZone of the top (-1) or bottom (1) edge, the list scrolls that way.
    readonly property real edgeZone: rowHeight
    property int edgeScroll: 0

    function drag(row, offset, sceneY) {
        if (dragRow < 0) dragStartContentY = contentY
        dragRow = row
        dragOffset = offset
        const y = mapFromItem(null, 0, sceneY).y
        edgeScroll = y < edgeZone ? -1 : (y > height - edgeZone ? 1 : 0)
    }
    function finishDrag(commit) {
        const row = dragRow
        const destination = dropDestination
        dragRow = -1
        dragOffset = 0
        edgeScroll = 0
        if (commit) mappings.move([row], destination)
    }

    model: mappings
    // Every row stays made (lists are short), so that a row dragged out of view keeps its pointer grab.
    cacheBuffer: count * rowHeight
    clip: true
    activeFocusOnTab: true
    keyNavigationEnabled: false
    boundsBehavior: Flickable.StopAtBounds
    topMargin: 6
    bottomMargin: 6
    // Always shown while the rows overflow, not only while scrolling: the list is longer than it looks.
    ScrollBar.vertical: ScrollBar {
        objectName: "listScrollBar"
        policy: list.contentHeight + list.topMargin + list.bottomMargin > list.height ? ScrollBar.AlwaysOn : ScrollBar.AsNeeded
    }
    Timer {
        interval: 30
        repeat: true
        running: list.dragRow >= 0 && list.edgeScroll !== 0
        onTriggered: {
            const top = list.originY - list.topMargin
            const bottom = Math.max(top, list.originY + list.contentHeight + list.bottomMargin - list.height)
            list.contentY = Math.max(top, Math.min(bottom, list.contentY + list.edgeScroll * 8))
        }
    }
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Key mappings")

    Keys.onUpPressed: (event) => {
        if (event.modifiers & Qt.AltModifier) mappings.moveSelected(-1)
        else mappings.selectedRow = Math.max(0, mappings.selectedRow - 1)
    }
    Keys.onDownPressed: (event) => {
        if (event.modifiers & Qt.AltModifier) mappings.moveSelected(1)
        else mappings.selectedRow = Math.min(count - 1, mappings.selectedRow + 1)
    }
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
        transform: Translate { y: row.index === list.dragRow ? list.dragShift : 0 }
        onSelectRequested: {
            list.mappings.selectedRow = index
            list.forceActiveFocus()
        }
        onToggleRequested: list.mappings.toggle(mappingId)
        onEditRequested: list.mappings.openEditing(mappingId)
        onDeleteRequested: list.mappings.deleteMapping(mappingId)
        onDragMoved: (offset, sceneY) => list.drag(index, offset, sceneY)
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
