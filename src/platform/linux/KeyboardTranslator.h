// Turns Linux key events into the Quartz events a Mac delivers for the same physical keys.
#pragma once

#include "model/KeyCode.h"
#include "platform/tapchain/PlatformEvent.h"

#include <cstdint>
#include <optional>

namespace orvane {

// Keeps the modifier state the events' flags report. Key values are evdev's: 0 release, 1 press,
// 2 autorepeat. Presses and releases must already be merged across keyboards.
class KeyboardTranslator {
public:
    enum class Outcome : std::uint8_t {
        event,        // a Quartz event for the taps
        passThrough,  // a key outside the catalogue: straight to the output
        ignore,       // nothing (a Caps Lock release, a modifier's autorepeat)
    };
    struct Result {
        Outcome outcome = Outcome::ignore;
        PlatformEvent event;
    };

    Result translate(std::uint16_t code, int value);

    // The flags of an event made now: the modifiers held, each side's own bit, Caps Lock's state.
    std::uint64_t flags() const { return flags_ | EventFlag::nonCoalesced; }
    // Caps Lock's state as the desktop last showed it on the lights.
    void setCapsLock(bool on);

private:
    std::uint64_t flags_ = 0;
};

}  // namespace orvane
