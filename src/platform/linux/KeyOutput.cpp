#include "platform/linux/KeyOutput.h"

#include "model/SystemKeyID.h"
#include "platform/EventEncoding.h"
#include "platform/linux/EvdevKeyTable.h"
#include "platform/linux/KeyboardTranslator.h"

#include <linux/input-event-codes.h>

#include <algorithm>

namespace orvane {
namespace {

constexpr std::uint64_t comboFlags = EventFlag::shift | EventFlag::control | EventFlag::alternate | EventFlag::command;

// Command is Super (Meta), Option is Alt, Control is Ctrl, Shift is Shift; each flag's left key first.
constexpr std::array<std::uint16_t, 8> modifierCodes{KEY_LEFTSHIFT, KEY_RIGHTSHIFT, KEY_LEFTCTRL, KEY_RIGHTCTRL,
                                                     KEY_LEFTALT,   KEY_RIGHTALT,   KEY_LEFTMETA, KEY_RIGHTMETA};
constexpr std::array<std::uint64_t, 4> modifierFlags{EventFlag::shift, EventFlag::control, EventFlag::alternate, EventFlag::command};

std::optional<std::size_t> modifierIndex(std::uint16_t code) {
    for (std::size_t i = 0; i < modifierCodes.size(); ++i)
        if (modifierCodes[i] == code) return i;
    return std::nullopt;
}

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
    chordCount_ = 0;
    users_.reset();
    for (std::uint16_t code = 0; code < down_.size(); ++code)
        if (down_[code]) setKey(code, false);
}

KeyOutput::ModifierSet KeyOutput::modifiersOf(const Chord& chord) const {
    ModifierSet wanted;
    for (std::size_t family = 0; family < modifierFlags.size(); ++family) {
        if (!(chord.flags & modifierFlags[family])) continue;
        // The side the user holds, if any, so that nothing changes on the output needlessly.
        const bool left = users_[family * 2], right = users_[family * 2 + 1];
        wanted[family * 2] = left || !right;
        wanted[family * 2 + 1] = right;
    }
    return wanted;
}

void KeyOutput::showModifiers() {
    ModifierSet wanted = chordCount_ ? modifiersOf(chords_[chordCount_ - 1]) : users_;
    for (std::size_t i = 0; i < chordCount_; ++i)  // a chord whose key is itself a modifier keeps it
        if (const auto index = modifierIndex(chords_[i].code)) wanted[*index] = true;
    for (std::size_t i = 0; i < modifierCodes.size(); ++i)
        if (!wanted[i]) setKey(modifierCodes[i], false);
    for (std::size_t i = 0; i < modifierCodes.size(); ++i)
        if (wanted[i] && !isDown(modifierCodes[i])) setKey(modifierCodes[i], true);
}

void KeyOutput::setUsersModifier(std::size_t modifier, bool down) {
    users_[modifier] = down;
    if (chordCount_ == 0) setKey(modifierCodes[modifier], down);  // under a chord: shown when it ends
}

void KeyOutput::deliver(const PlatformEvent& event, std::uint64_t heldFlags) {
    if (event.type == TapEventType::systemDefined) {
        if (!event.systemDefined || event.systemDefined->subtype != auxControlButtonsSubtype) return;
        const MediaKeyState media = decodeMediaKeyData1(event.systemDefined->data1);
        const auto systemKey = systemKeyFromRaw(media.keyType);
        if (!systemKey) return;
        if (const auto code = evdevkeys::codeFor(*systemKey)) setKey(*code, media.isDown, media.isRepeat);
        return;
    }
    const auto key = keyCodeFromRaw(event.keyCode);
    if (!key) return;
    const auto code = evdevkeys::codeFor(*key);
    if (!code) return;
    const auto ownFlag = modifierFlagMask(*key);
    if (event.type == TapEventType::flagsChanged) {
        if (*key == KeyCode::capsLock) {  // each change of the toggle is a whole press
            setKey(*code, true);
            setKey(*code, false);
            return;
        }
        // Each side's own bit tells which of two held keys of a modifier changed.
        const auto side = sideFlag(*key);
        const bool down = (event.flags & side.value_or(ownFlag.value_or(0))) != 0;
        if (const auto modifier = modifierIndex(*code)) setUsersModifier(*modifier, down);
        else setKey(*code, down);
        return;
    }
    if (event.type == TapEventType::keyDown || event.type == TapEventType::keyUp)
        deliverKey(*code, ownFlag, event.type == TapEventType::keyDown, event.flags, heldFlags);
}

void KeyOutput::deliverKey(std::uint16_t code, std::optional<std::uint64_t> ownFlag, bool down, std::uint64_t flags,
                           std::uint64_t heldFlags) {
    Chord* const chordsEnd = chords_.data() + chordCount_;
    Chord* const chord = std::find_if(chords_.data(), chordsEnd, [code](const Chord& c) { return c.code == code; });
    const std::uint64_t considered = comboFlags & ~ownFlag.value_or(0);
    const bool combination = down && (flags & considered) != (heldFlags & considered);
    if (chord == chordsEnd && !combination) {
        // A modifier key delivered as a key (a key mapped to one) counts as the user's own.
        if (const auto modifier = modifierIndex(code)) setUsersModifier(*modifier, down);
        else setKey(code, down);  // typed while a chord is held, it gets the chord's modifiers
        return;
    }
    if (!down) {
        setKey(code, false);
        std::copy(chord + 1, chordsEnd, chord);
        --chordCount_;
        showModifiers();
        return;
    }
    // A held chord's repeats repeat the chord.
    if (chord == chordsEnd && chordCount_ < chords_.size()) {
        chords_[chordCount_++] = {code, flags};
        showModifiers();
    }
    setKey(code, true);
}

}  // namespace orvane
