// The captured events, newest on top, in an inset list; follows the newest when the model asks.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

FocusScope {
    id: root
    property DebugViewModel model

    objectName: "eventList"
    activeFocusOnTab: true
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Captured events")

    Rectangle {
        anchors.fill: parent
        radius: 6
        color: palette.base
        border.width: root.activeFocus ? 2 : 1
        border.color: root.activeFocus ? palette.highlight : palette.mid
    }

    ListView {
        id: list
        objectName: "eventListView"
        anchors.fill: parent
        anchors.margins: 6
        clip: true
        focus: true
        spacing: 4
        model: root.model
        boundsBehavior: Flickable.StopAtBounds
        ScrollBar.vertical: ScrollBar {}
        Keys.onUpPressed: scrollBy(-24)
        Keys.onDownPressed: scrollBy(24)

        delegate: DebugEventRow {
            width: ListView.view.width - 12
            x: 6
        }

        function scrollBy(delta) {
            contentY = Math.max(originY, Math.min(contentY + delta, originY + contentHeight - height))
        }

        NumberAnimation {
            id: scrollAnimation
            target: list
            property: "contentY"
            duration: 200
            easing.type: Easing.OutQuad
        }

        Connections {
            target: root.model
            // Let the list lay out the new row first, then ease from where it stands to the top.
            function onScrollToNewest() {
                scrollAnimation.stop()
                const from = list.contentY
                list.positionViewAtBeginning()
                const to = list.contentY
                list.contentY = from
                scrollAnimation.from = from
                scrollAnimation.to = to
                scrollAnimation.start()
            }
        }
    }
}
