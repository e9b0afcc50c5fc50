// Text styles and colours shared by every view, in the sizes of a Mac utility. Sizes are in pixels
// (a Mac point): in points they would grow by a third on a 96 dpi desktop, past the fixed window
// and sheet sizes that the views were laid out for.
pragma Singleton
import QtQuick

QtObject {
    readonly property real padding: 16          // the platform's standard padding
    readonly property font headline: Qt.font({ pixelSize: 13, weight: Font.DemiBold })
    readonly property font subheadline: Qt.font({ pixelSize: 11 })
    readonly property font caption: Qt.font({ pixelSize: 10 })
    // A keycap's label: letters and words at the body size; a symbol (⎋ ⏯ 🔊 ⌘) larger, since symbols
    // and emoji fill less of the line than a capital letter, and small ones blur into each other.
    function keycapPixelSize(label: string): real {
        return /[A-Za-z0-9]/.test(label) ? 11 : 16
    }
    // Secondary text (captions, hints, dimmed marks): the palette's text colour laid on its window colour at
    // 62 %, opaque. It reads at 4.5:1 or more on the window, on lists' alternate rows and on a 10 % darker
    // selection, in a light palette and a dark one alike; the palette's own placeholder colour (half
    // transparent) does not.
    readonly property SystemPalette system: SystemPalette {}
    readonly property color secondaryText: Qt.tint(system.window, Qt.rgba(system.windowText.r, system.windowText.g,
                                                                           system.windowText.b, 0.62))
    readonly property color blue: "#007aff"
    readonly property color orange: "#ff9500"
    readonly property color red: "#ff3b30"
    // Fills under white badge text: the system colours darkened to a contrast of at least 4.5:1.
    readonly property color badgeGreen: "#1d7a34"
    readonly property color badgeBlue: "#0a5cc2"
    readonly property color badgeOrange: "#a65400"
    readonly property color badgeGray: "#636366"
    readonly property color badgePurple: "#8944ab"
    function badgeFill(colorName: string): color {
        switch (colorName) {
        case "green": return badgeGreen
        case "blue": return badgeBlue
        case "orange": return badgeOrange
        default: return badgeGray
        }
    }
    // A notice: dark amber text on pale amber, readable at 4.5:1 and more.
    readonly property color noticeBackground: "#fff4d6"
    readonly property color noticeText: "#5c3b00"
}
