// One captured event: its time and direction badge, then the key, its name, a mapping's effect and modifiers.
import QtQuick
import QtQuick.Controls
import Orvane 1.0

Item {
    id: root
    // The model's roles for one record.
    required property string time
    required property string direction
    required property int tone
    required property string keyCode
    required property string nxCode
    required property string decoded
    required property string interception
    required property bool interceptionActive
    required property string flagsText

    readonly property color secondary: Theme.secondaryText
    readonly property font smallMono: Qt.font({ family: "monospace", pixelSize: 10 })
    readonly property font codeFont: Qt.font({ family: "monospace", pixelSize: 11 })

    implicitWidth: row.implicitWidth
    implicitHeight: row.height + 4
    Accessible.role: Accessible.ListItem
    Accessible.name: spokenText([time, direction, keyCode || nxCode, decoded, interception, flagsText])

    // What a screen reader says for the row: its non-empty texts, comma-separated.
    function spokenText(parts: list<string>): string { return parts.filter(part => part).join(", ") }

    TextMetrics { id: timeWidth; font: root.smallMono; text: "00:00:00.000" }
    TextMetrics { id: codeWidth; font: root.codeFont; text: "000" }

    Row {
        id: row
        y: 2
        width: parent.width
        spacing: 6

        Column {
            // 70 wide, or as wide as the time needs in this font.
            width: Math.max(70, Math.ceil(timeWidth.advanceWidth))
            spacing: 2
            Label {
                objectName: "timeText"
                text: root.time
                font: root.smallMono
                color: root.secondary
            }
            DirectionBadge {
                text: root.direction
                tone: root.tone
            }
        }

        Column {
            width: row.width - x
            spacing: 2
            Row {
                spacing: 4
                Label {
                    objectName: "codeText"
                    visible: text !== ""
                    width: Math.max(24, Math.ceil(codeWidth.advanceWidth))
                    text: root.keyCode || root.nxCode
                    font: root.codeFont
                    horizontalAlignment: Text.AlignRight
                }
                Label {
                    objectName: "decodedText"
                    visible: text !== ""
                    text: root.decoded
                    font.pixelSize: 11
                    font.weight: Font.Medium
                    color: Theme.badgeGreen
                }
            }
            Row {
                visible: interceptionText.visible || flagsLabel.visible
                spacing: 4
                Label {
                    id: interceptionText
                    objectName: "interceptionText"
                    visible: text !== ""
                    text: root.interception
                    font.pixelSize: 10
                    color: root.interceptionActive ? Theme.badgeOrange : root.secondary
                }
                Label {
                    id: flagsLabel
                    objectName: "flagsText"
                    visible: text !== ""
                    text: root.flagsText
                    font: root.smallMono
                    color: root.secondary
                }
            }
        }
    }
}
