// A vertically scrolling grid of key cells at least 90 wide, as many per row as fit, 8 between rows.
// The arrow keys move the focus from key to key, scrolling the key that takes it into view.
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls

Item {
    id: root
    property alias model: grid.model
    signal keyClicked(int keyCode)

    GridView {
        id: grid
        objectName: "keyGridView"
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom; right: scrollBar.left }
        readonly property int columns: Math.max(1, Math.floor(width / 90))
        cellWidth: width / columns
        cellHeight: 58
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: scrollBar
        // The grid's own navigation moves its current item, not the focus, which then sits on no key.
        keyNavigationEnabled: false

        function focusCell(index) {
            if (index < 0 || index >= count) return
            positionViewAtIndex(index, GridView.Contain)
            const cell = itemAtIndex(index)
            if (cell) cell.children[0].forceActiveFocus(Qt.TabFocusReason)
        }

        delegate: Item {
            id: cell
            required property int index
            required property int keyCode
            required property string symbol
            required property string displayName
            required property bool showsDisplayName
            width: grid.cellWidth
            height: grid.cellHeight

            KeyButton {
                objectName: "keyButton_" + cell.displayName
                // Centred, so that its focus ring stays inside the grid's clip in the first row too.
                anchors.centerIn: parent
                symbol: cell.symbol
                displayName: cell.displayName
                showsDisplayName: cell.showsDisplayName
                onClicked: root.keyClicked(cell.keyCode)
                Keys.onUpPressed: grid.focusCell(cell.index - grid.columns)
                Keys.onDownPressed: grid.focusCell(Math.min(cell.index + grid.columns, grid.count - 1))
                Keys.onLeftPressed: grid.focusCell(cell.index - 1)
                Keys.onRightPressed: grid.focusCell(cell.index + 1)
            }
        }
    }

    ScrollBar {
        id: scrollBar
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        policy: ScrollBar.AsNeeded
    }
}
