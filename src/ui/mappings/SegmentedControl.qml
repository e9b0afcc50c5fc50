// A row of joined, mutually exclusive segments; the chosen segment's index is currentIndex.
pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Row {
    id: root
    property var titles: []
    property int currentIndex: 0
    signal activated(int index)

    spacing: -1
    SystemPalette { id: colors; colorGroup: SystemPalette.Active }
    Repeater {
        model: root.titles
        Button {
            required property int index
            required property string modelData
            objectName: "segment" + modelData
            text: modelData
            checkable: true
            topPadding: 3
            bottomPadding: 3
            checked: index === root.currentIndex
            implicitWidth: Math.max(80, implicitContentWidth + leftPadding + rightPadding)
            implicitHeight: implicitContentHeight + topPadding + bottomPadding
            palette.button: checked ? colors.highlight : colors.button
            palette.buttonText: checked ? colors.highlightedText : colors.buttonText
            onClicked: {
                checked = Qt.binding(() => index === root.currentIndex)
                root.activated(index)
            }
            FocusRing {}
        }
    }
}
