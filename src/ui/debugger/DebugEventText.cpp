#include "ui/debugger/DebugEventText.h"

#include "interception/TapEvent.h"
#include "model/KeyCode.h"

#include <QDateTime>

#include <array>
#include <utility>

namespace orvane::debugtext {
namespace {

using namespace EventFlag;

// Left out of the hexadecimal remainder: the non-coalesced bit (0x100), which nearly every event
// carries, and fn, which has its own glyph.
constexpr std::uint64_t quietBits = 0x800100;

std::optional<std::uint64_t> modifierFlag(int keycode) {
    switch (keycode) {
    case rawValue(KeyCode::rightCommand):
    case rawValue(KeyCode::leftCommand): return command;
    case rawValue(KeyCode::leftShift):
    case rawValue(KeyCode::rightShift): return shift;
    case rawValue(KeyCode::capsLock): return alphaShift;
    case rawValue(KeyCode::leftOption):
    case rawValue(KeyCode::rightOption): return alternate;
    case rawValue(KeyCode::leftControl):
    case rawValue(KeyCode::rightControl): return control;
    case rawValue(KeyCode::function): return secondaryFn;
    default: return std::nullopt;
    }
}

QString systemLabel(const DebugEvent& event) {
    if (!event.subtype) return QStringLiteral("\u25C6 system");
    if (*event.subtype == auxControlButtonsSubtype && event.data1)
        // Bit 8 of data1 is set on the release of a media key.
        return (*event.data1 & 0x100) ? QStringLiteral("\u2191 system") : QStringLiteral("\u2193 system");
    return QStringLiteral("\u25C6 sys:") + QString::number(*event.subtype);
}

}  // namespace

bool modifierIsDown(int keycode, std::uint64_t flags) {
    const auto flag = modifierFlag(keycode);
    return flag && (flags & *flag) != 0;
}

QString directionLabel(const DebugEvent& event) {
    switch (event.eventType) {
    case 10: return QStringLiteral("\u2193 keyDown");
    case 11: return QStringLiteral("\u2191 keyUp");
    case 12:
        if (!event.keycode || !event.flags) return QStringLiteral("\u21C5 flags");
        return modifierIsDown(*event.keycode, *event.flags) ? QStringLiteral("\u2193 flags") : QStringLiteral("\u2191 flags");
    case 14: return systemLabel(event);
    default: return QStringLiteral("? unknown");
    }
}

BadgeTone badgeTone(int eventType) {
    switch (eventType) {
    case 10: return BadgeTone::Blue;
    case 11: return BadgeTone::Gray;
    case 12: return BadgeTone::Purple;
    case 14: return BadgeTone::Orange;
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

QString shownFlagsText(const DebugEvent& event) {
    if (!event.flags || *event.flags == 0) return {};
    return flagsText(*event.flags);
}

std::optional<int> nxKeyCode(const DebugEvent& event) {
    if (event.eventType != 14 || event.subtype != auxControlButtonsSubtype || !event.data1) return std::nullopt;
    return static_cast<int>((*event.data1 >> 16) & 0xFF);
}

QString captureTimeText(std::chrono::system_clock::time_point time) {
    const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch()).count();
    return QDateTime::fromMSecsSinceEpoch(milliseconds, Qt::LocalTime).toString(QStringLiteral("HH:mm:ss.zzz"));
}

}  // namespace orvane::debugtext
