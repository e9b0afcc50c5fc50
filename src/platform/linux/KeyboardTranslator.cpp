#include "platform/linux/KeyboardTranslator.h"

#include "platform/EventEncoding.h"
#include "platform/linux/EvdevKeyTable.h"

namespace orvane {

namespace {

// The shared flag stays while the key of the other side is still held.
std::uint64_t sharedFlagsOf(std::uint64_t flags) {
    std::uint64_t shared = flags & (EventFlag::alphaShift | EventFlag::secondaryFn);
    if (flags & (0x1 | 0x2000)) shared |= EventFlag::control;
    if (flags & (0x2 | 0x4)) shared |= EventFlag::shift;
    if (flags & (0x8 | 0x10)) shared |= EventFlag::command;
    if (flags & (0x20 | 0x40)) shared |= EventFlag::alternate;
    return shared;
}

constexpr std::uint64_t sideFlags = 0x1 | 0x2 | 0x4 | 0x8 | 0x10 | 0x20 | 0x40 | 0x2000;

}  // namespace

void KeyboardTranslator::setCapsLock(bool on) {
    if (on) flags_ |= EventFlag::alphaShift;
    else flags_ &= ~EventFlag::alphaShift;
}

KeyboardTranslator::Result KeyboardTranslator::translate(std::uint16_t code, int value) {
    const evdevkeys::Meaning meaning = evdevkeys::meaningOf(code);
    Result result;
    if (const auto* systemKey = std::get_if<SystemKeyID>(&meaning)) {
        result.outcome = Outcome::event;
        result.event = {TapEventType::systemDefined, 0, flags(), 0,
                        SystemDefinedFields{auxControlButtonsSubtype, mediaKeyData1(rawValue(*systemKey), value != 0, value == 2)}};
        return result;
    }
    const auto* key = std::get_if<KeyCode>(&meaning);
    if (!key) {
        result.outcome = Outcome::passThrough;
        return result;
    }
    const auto keyCode = static_cast<std::uint16_t>(rawValue(*key));
    if (*key == KeyCode::capsLock) {
        // Caps Lock reports its toggle state: one flags change per press, none on release.
        if (value != 1) return result;
        flags_ ^= EventFlag::alphaShift;
        result.outcome = Outcome::event;
        result.event = {TapEventType::flagsChanged, keyCode, flags(), 0, std::nullopt};
        return result;
    }
    if (isModifierKey(*key)) {
        if (value == 2) return result;  // modifiers do not repeat
        const std::uint64_t own = sideFlag(*key).value_or(*modifierFlagMask(*key));
        if (value) flags_ |= own;
        else flags_ &= ~own;
        flags_ = (flags_ & (sideFlags | EventFlag::alphaShift)) | sharedFlagsOf(flags_);
        result.outcome = Outcome::event;
        result.event = {TapEventType::flagsChanged, keyCode, flags(), 0, std::nullopt};
        return result;
    }
    result.outcome = Outcome::event;
    result.event = {value ? TapEventType::keyDown : TapEventType::keyUp, keyCode, flags(), 0, std::nullopt};
    return result;
}

}  // namespace orvane
