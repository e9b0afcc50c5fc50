#include "ui/debugger/DebugEventText.h"

#include "model/KeyCode.h"
#include "ui/debugger/DebugEventWords.h"

#include <QDateTime>

#include <array>
#include <utility>

namespace orvane::debugtext {
namespace {

using namespace EventFlag;

// Left out of the hexadecimal remainder: the non-coalesced bit, which nearly every event carries,
// and fn, which has its own glyph.
constexpr std::uint64_t quietBits = nonCoalesced | secondaryFn;

QString systemLabel(const TapEvent& event) {
    if (!event.subtype) return QStringLiteral("\u25C6 system");
    if (event.isDown) return *event.isDown ? QStringLiteral("\u2193 system") : QStringLiteral("\u2191 system");
    return QStringLiteral("\u25C6 sys:") + QString::number(*event.subtype);
}

}  // namespace

QString directionLabel(const DebugEvent& record) {
    const TapEvent& event = record.event;
    switch (event.type) {
    case TapEventType::keyDown: return QStringLiteral("\u2193 keyDown");
    case TapEventType::keyUp: return QStringLiteral("\u2191 keyUp");
    // A flags change of a key that is no modifier reads as a release.
    case TapEventType::flagsChanged: return event.isDown.value_or(false) ? QStringLiteral("\u2193 flags") : QStringLiteral("\u2191 flags");
    case TapEventType::systemDefined: return systemLabel(event);
    default: return QStringLiteral("? unknown");
    }
}

BadgeTone badgeTone(std::uint32_t eventType) {
    switch (eventType) {
    case TapEventType::keyDown: return BadgeTone::Blue;
    case TapEventType::keyUp: return BadgeTone::Gray;
    case TapEventType::flagsChanged: return BadgeTone::Purple;
    case TapEventType::systemDefined: return BadgeTone::Orange;
    default: return BadgeTone::Secondary;
    }
}

QString flagsText(std::uint64_t flags) {
    static const std::array<std::pair<std::uint64_t, const char16_t*>, 6> glyphs{{
        {command, u"\u2318"},
        {alternate, u"\u2325"},
        {control, u"\u2303"},
        {shift, u"\u21E7"},
        {alphaShift, u"\u21EA"},
        {secondaryFn, u"fn"},
    }};
    QString text;
    for (const auto& [bit, glyph] : glyphs)
        if (flags & bit) text += QString::fromUtf16(glyph);
    if (!text.isEmpty()) return text;
    const std::uint64_t rest = flags & ~quietBits;
    if (rest == 0) return {};
    return QStringLiteral("0x") + QString::number(rest, 16).toUpper();
}

QString shownFlagsText(const DebugEvent& record) {
    if (!debugwords::hasKeyFields(record) || record.event.flags == 0) return {};
    return flagsText(record.event.flags);
}

QString captureTimeText(std::chrono::system_clock::time_point time) {
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::LocalTime).toString(QStringLiteral("HH:mm:ss.zzz"));
}

}  // namespace orvane::debugtext
