// Text styles and colours shared by every view, in the sizes of a Mac utility.
pragma Singleton
import QtQuick

QtObject {
    readonly property real padding: 16          // the platform's standard padding
    readonly property font headline: Qt.font({ pointSize: 13, weight: Font.DemiBold })
    readonly property font subheadline: Qt.font({ pointSize: 11 })
    readonly property font caption: Qt.font({ pointSize: 10 })
    readonly property color green: "#34c759"
    readonly property color blue: "#007aff"
    readonly property color orange: "#ff9500"
    readonly property color red: "#ff3b30"
}
