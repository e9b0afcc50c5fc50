#include "platform/linux/KeyOutput.h"

#include "interception/TapEvent.h"
#include "platform/linux/EvdevKeyTable.h"
#include "platform/linux/KeyboardTranslator.h"

#include <array>
#include <vector>

namespace orvane {
namespace {

constexpr std::uint64_t comboFlags = EventFlag::shift | EventFlag::control | EventFlag::alternate | EventFlag::command;

struct ModifierKeys {
    std::uint64_t flag;
    KeyCode left, right;
};
// Command is Super (Meta), Option is Alt, Control is Ctrl, Shift is Shift.
constexpr std::array<ModifierKeys, 4> modifierKeys{{
    {EventFlag::shift, KeyCode::leftShift, KeyCode::rightShift},
    {EventFlag::control, KeyCode::leftControl, KeyCode::rightControl},
    {EventFlag::alternate, KeyCode::leftOption, KeyCode::rightOption},
    {EventFlag::command, KeyCode::leftCommand, KeyCode::rightCommand},
}};

std::uint16_t codeOf(KeyCode key) { return *evdevkeys::codeFor(key); }

}  // namespace

void KeyOutput::setKey(std::uint16_t code, bool down, bool repeat) {
    if (code >= down_.size() || !output_) return;
    if (!down) {
        if (!down_[code]) return;  // never pressed here: nothing to release
        down_[code] = false;
        output_->writeKey(code, 0);
        return;
    }
    // The kernel drops a second press of a held key; a held key repeats instead.
    output_->writeKey(code, down_[code] || repeat ? 2 : 1);
    down_[code] = true;
}

void KeyOutput::passThrough(std::uint16_t code, int value) {
    if (evdevkeys::isButtonCode(code)) return;
    setKey(code, value != 0, value == 2);
}

void KeyOutput::releaseAll() {
    for (std::uint16_t code = 0; code < down_.size(); ++code)
        if (down_[code]) setKey(code, false);
}

void KeyOutput::deliver(const PlatformEvent& event, std::uint64_t heldFlags) {
    const std::optional<std::int16_t> subtype =
        event.systemDefined ? std::optional<std::int16_t>(event.systemDefined->subtype) : std::nullopt;
    const TapEvent decoded = TapEvent::decode(event.type, event.keyCode, event.flags, event.userData, subtype,
                                              event.systemDefined ? event.systemDefined->data1 : 0);
    if (decoded.type == TapEventType::systemDefined) {
        if (!decoded.systemKey || !decoded.isDown) return;
        if (const auto code = evdevkeys::codeFor(*decoded.systemKey)) setKey(*code, *decoded.isDown, decoded.data1 & 1);
        return;
    }
    if (!decoded.key) return;
    const auto code = evdevkeys::codeFor(*decoded.key);
    if (!code) return;
    if (decoded.type == TapEventType::flagsChanged) {
        if (*decoded.key == KeyCode::capsLock) {  // each change of the toggle is a whole press
            setKey(*code, true);
            setKey(*code, false);
            return;
        }
        // Each side's own bit tells which of two held keys of a modifier changed.
        const auto side = sideFlag(*decoded.key);
        if (side) setKey(*code, (event.flags & *side) != 0);
        else if (decoded.isDown) setKey(*code, *decoded.isDown);
        return;
    }
    if (decoded.type == TapEventType::keyDown || decoded.type == TapEventType::keyUp)
        deliverKey(*code, modifierFlagMask(*decoded.key), *decoded.isDown, event.flags, heldFlags);
}

void KeyOutput::deliverKey(std::uint16_t code, std::optional<std::uint64_t> ownFlag, bool down, std::uint64_t flags,
                           std::uint64_t heldFlags) {
    const std::uint64_t considered = comboFlags & ~ownFlag.value_or(0);
    if ((flags & considered) == (heldFlags & considered)) {
        setKey(code, down);
        return;
    }
    std::vector<std::uint16_t> pressed, released;
    for (const ModifierKeys& modifier : modifierKeys) {
        if (!(considered & modifier.flag)) continue;
        const std::uint16_t left = codeOf(modifier.left), right = codeOf(modifier.right);
        const bool wanted = flags & modifier.flag, present = isDown(left) || isDown(right);
        if (wanted && !present) pressed.push_back(left);
        if (!wanted && present)
            for (const std::uint16_t side : {left, right})
                if (isDown(side)) released.push_back(side);
    }
    for (const auto modifier : pressed) setKey(modifier, true);
    for (const auto modifier : released) setKey(modifier, false);
    setKey(code, down);
    for (const auto modifier : pressed) setKey(modifier, false);
    for (const auto modifier : released) setKey(modifier, true);
}

}  // namespace orvane
