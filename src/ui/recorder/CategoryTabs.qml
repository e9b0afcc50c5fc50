// A segmented control: one segment per title, exactly one selected; selected(index) on a click.
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Orvane 1.0

Rectangle {
    id: root
    property var titles: []
    property int currentIndex: 0
    signal selected(int index)

    implicitWidth: segments.implicitWidth + 4
    implicitHeight: segments.implicitHeight + 4
    radius: 6
    color: palette.button
    border.color: palette.mid
    border.width: 1

    RowLayout {
        id: segments
        anchors.fill: parent
        anchors.margins: 2
        spacing: 0

        Repeater {
            model: root.titles
            delegate: AbstractButton {
                id: segment
                required property string modelData
                required property int index
                readonly property bool current: index === root.currentIndex

                objectName: "categoryTab_" + modelData
                Layout.fillWidth: true
                Layout.preferredWidth: implicitWidth
                implicitWidth: implicitContentWidth + 16
                implicitHeight: implicitContentHeight + 8
                onClicked: root.selected(index)

                background: Rectangle {
                    radius: 5
                    color: segment.current ? palette.base : "transparent"
                    border.width: segment.current ? 1 : 0
                    border.color: palette.mid
                }
                contentItem: Label {
                    text: segment.modelData
                    font.pixelSize: 12
                    elide: Text.ElideRight
                    horizontalAlignment: Text.AlignHCenter
                    verticalAlignment: Text.AlignVCenter
                    color: segment.current ? palette.text : palette.buttonText
                    opacity: segment.pressed ? 0.6 : 1
                }
                FocusRing {}
            }
        }
    }
}
