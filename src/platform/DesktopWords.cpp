#include "platform/DesktopWords.h"

namespace orvane {

// A Mac keyboard prints the glyphs on its keys, so the glyphs are the labels.
DesktopWords DesktopWords::mac() {
    return {{QStringLiteral("Control"), QStringLiteral("Option"), QStringLiteral("Shift"), QStringLiteral("Command")},
            {QStringLiteral("⌃"), QStringLiteral("⌥"), QStringLiteral("⇧"), QStringLiteral("⌘")},
            QStringLiteral("⌥"), QStringLiteral("Show menu bar icon")};
}

// A PC keyboard prints names; the key with the logo is Super to Linux desktops.
DesktopWords DesktopWords::linuxDesktop() {
    return {{QStringLiteral("Control"), QStringLiteral("Alt"), QStringLiteral("Shift"), QStringLiteral("Super")},
            {QStringLiteral("Ctrl"), QStringLiteral("Alt"), QStringLiteral("Shift"), QStringLiteral("Super")},
            QStringLiteral("Alt+"), QStringLiteral("Show tray icon")};
}

}  // namespace orvane
