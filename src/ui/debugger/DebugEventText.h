// How the key event debugger words one captured record: direction label, badge tone, glyphs, time.
#pragma once

#include "interception/DebugEvent.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <chrono>
#include <cstdint>
#include <optional>

namespace orvane {
namespace debugtext {
Q_NAMESPACE
QML_NAMED_ELEMENT(DebugEventText)

// The colour role of a record's direction badge; the view picks the actual colour.
enum class BadgeTone { Blue, Gray, Purple, Orange, Secondary };
Q_ENUM_NS(BadgeTone)

// "↓ keyDown", "↑ flags", "◆ sys:7", …: the kind of event and, where it can be told, its direction.
QString directionLabel(const DebugEvent& record);

BadgeTone badgeTone(std::uint32_t eventType);

// The modifier glyphs (⌘⌥⌃⇧⇪fn) of the set bits; with none, the remaining bits in hexadecimal
// apart from 0x800100, or empty.
QString flagsText(std::uint64_t flags);

// flagsText as the row shows it: empty for records without flags (system-defined) or with 0.
QString shownFlagsText(const DebugEvent& record);

// "HH:mm:ss.SSS" on the 24-hour clock in local time.
QString captureTimeText(std::chrono::system_clock::time_point time);

}  // namespace debugtext
}  // namespace orvane
