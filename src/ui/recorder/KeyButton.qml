// One cell of the key picker: the key's symbol and, where the symbol alone does not say it, its name.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

AbstractButton {
    id: root
    property string symbol
    property string displayName
    property bool showsDisplayName

    implicitWidth: 80
    implicitHeight: 50
    padding: 4

    background: Rectangle {
        radius: 6
        color: palette.base
        border.color: palette.mid
        border.width: 1
    }

    contentItem: Item {
        opacity: root.pressed ? 0.6 : 1

        Column {
            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            spacing: 2

            Label {
                objectName: "keySymbol"
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: root.symbol
                font.pixelSize: 16
                // Word symbols ("Page Down", "Keypad Enter") take a second line rather than overflow.
                wrapMode: Text.WordWrap
                maximumLineCount: root.showsDisplayName ? 1 : 2
                elide: Text.ElideRight
            }
            Label {
                objectName: "keyName"
                visible: root.showsDisplayName
                width: parent.width
                horizontalAlignment: Text.AlignHCenter
                text: root.displayName
                font.pixelSize: 9
                color: Theme.secondaryText
                maximumLineCount: 1
                elide: Text.ElideRight
            }
        }
    }
    FocusRing {}
}
