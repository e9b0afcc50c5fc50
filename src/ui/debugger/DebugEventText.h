// How the key event debugger words one captured record: direction label, badge tone, glyphs, time.
#pragma once

#include "interception/DebugEvent.h"

#include <QObject>
#include <QString>

#include <chrono>
#include <cstdint>
#include <optional>

namespace orvane {
namespace debugtext {
Q_NAMESPACE

// The colour role of a record's direction badge; the view picks the actual colour.
enum class BadgeTone { Blue, Gray, Purple, Orange, Secondary };
Q_ENUM_NS(BadgeTone)

// Whether the modifier that the key code names is set in the flags word; false for other keys.
bool modifierIsDown(int keycode, std::uint64_t flags);

// "↓ keyDown", "↑ flags", "◆ sys:7", …: the kind of event and, where it can be told, its direction.
QString directionLabel(const DebugEvent& event);

BadgeTone badgeTone(int eventType);

// The modifier glyphs (⌘⌥⌃⇧⇪fn) of the set bits; with none, the remaining bits in hexadecimal
// apart from 0x800100, or empty.
QString flagsText(std::uint64_t flags);

// flagsText as the row shows it: empty when the record has no flags or they are 0.
QString shownFlagsText(const DebugEvent& event);

// The NX key code of a media key event (subtype 8 with data1), bits 16 to 23 of data1.
std::optional<int> nxKeyCode(const DebugEvent& event);

// "HH:mm:ss.SSS" on the 24-hour clock in local time.
QString captureTimeText(std::chrono::system_clock::time_point time);

}  // namespace debugtext
}  // namespace orvane
