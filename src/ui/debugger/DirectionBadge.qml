// A record's direction label, white on the colour of its event type.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Label {
    id: root
    property int tone: DebugEventText.Secondary

    // The theme's badge shades, under which white text stays readable.
    readonly property color fill: {
        switch (tone) {
        case DebugEventText.Blue: return Theme.badgeBlue
        case DebugEventText.Purple: return Theme.badgePurple
        case DebugEventText.Orange: return Theme.badgeOrange
        default: return Theme.badgeGray
        }
    }

    objectName: "directionBadge"
    font: Qt.font({ family: "monospace", pixelSize: 10, weight: Font.Medium })
    color: "white"
    leftPadding: 4
    rightPadding: 4
    topPadding: 1
    bottomPadding: 1
    background: Rectangle {
        radius: 3
        color: root.fill
    }
}
