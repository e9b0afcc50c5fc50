// Writes delivered Quartz events to the virtual keyboard, with exactly the modifiers they carry.
#pragma once

#include "platform/linux/KeyboardDevices.h"
#include "platform/tapchain/PlatformEvent.h"

#include <array>
#include <bitset>
#include <cstdint>
#include <optional>

namespace orvane {

// A Quartz event carries its own modifier flags; a Linux desktop reads modifiers from the keys held.
// So a key delivered with other modifiers than the user holds (a combination made by a mapping) is
// written as a chord that lasts while its key is held: the combination's modifiers go down (those of
// the user's that it lacks go up), then the key; at its release the key and the added modifiers go
// up and the user's modifiers still held go down again. A held chord repeats as the chord, and keys
// typed while it is held get its modifiers, as a chord's would. Changes of the user's own modifiers
// while a chord is held are remembered and shown once it ends.
//
// Knows which keys it holds down on the output, so that nothing it pressed stays pressed.
class KeyOutput {
public:
    explicit KeyOutput(KeyboardOutput& output) : output_(&output) {}
    // From now on nothing is written (the device is going away).
    void detach() { output_ = nullptr; }

    // heldFlags: the modifiers physically held now; a key event whose modifiers differ from them is
    // a combination.
    void deliver(const PlatformEvent& event, std::uint64_t heldFlags);
    // A key the taps never see.
    void passThrough(std::uint16_t code, int value);
    void releaseAll();
    bool isDown(std::uint16_t code) const { return code < down_.size() && down_[code]; }

private:
    using ModifierSet = std::bitset<8>;  // the eight modifier keys, in modifierCodes order
    struct Chord {
        std::uint16_t code;
        std::uint64_t flags;
    };

    void setKey(std::uint16_t code, bool down, bool repeat = false);
    void deliverKey(std::uint16_t code, std::optional<std::uint64_t> ownFlag, bool down, std::uint64_t flags,
                    std::uint64_t heldFlags);
    void setUsersModifier(std::size_t modifier, bool down);
    void showModifiers();
    ModifierSet modifiersOf(const Chord& chord) const;

    KeyboardOutput* output_;
    std::bitset<0x300> down_;
    ModifierSet users_;  // the modifiers as the user's own modifier changes leave them
    std::array<Chord, 8> chords_{};  // held chords, the newest last: its modifiers are on the output
    std::size_t chordCount_ = 0;
};

}  // namespace orvane
