// A record's direction label, white on the colour of its event type.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Label {
    id: root
    property int tone: DebugEventText.Secondary

    // macOS system gray and purple; the other tones come from the theme.
    readonly property color fill: {
        switch (tone) {
        case DebugEventText.Blue: return Theme.blue
        case DebugEventText.Gray: return "#8e8e93"
        case DebugEventText.Purple: return "#af52de"
        case DebugEventText.Orange: return Theme.orange
        default: return palette.placeholderText
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
