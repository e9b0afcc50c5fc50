// The words for things that each desktop names its own way: the modifier keys and the status icon's place.
#pragma once

#include <QString>

#include <array>

namespace orvane {

struct DesktopWords {
    // In the order Control, Option, Shift, Command (the order of the modifier glyphs ⌃ ⌥ ⇧ ⌘).
    std::array<QString, 4> modifierNames;   // full names, as in a tooltip
    std::array<QString, 4> modifierLabels;  // what a modifier checkbox says
    QString optionChord;                    // Option held with a key, before the key: "⌥" or "Alt+"
    QString statusIconSetting;              // the setting that shows or hides the status icon

    static DesktopWords mac();
    static DesktopWords linuxDesktop();

    // The words of the build's desktop; each backend defines it. The simulated platform's are a
    // Mac's unless a test chose others (simulateDesktopWords).
    static const DesktopWords& shared();
};

}  // namespace orvane
