// The record of one keyboard event captured for the key event debugger: what arrived and what a mapping does with it.
#pragma once

#include "interception/RemapEngine.h"
#include "interception/TapEvent.h"
#include "model/Mapping.h"
#include "model/Uuid.h"

#include <chrono>
#include <optional>

namespace orvane {

// Data only; the debugger's views word it.
struct DebugEvent {
    Uuid id;
    std::chrono::system_clock::time_point timestamp;  // when the tap callback ran
    // The event as decoded. F18 that the HID layer made of Caps Lock is recorded as Caps Lock
    // (key and keyCode), because that is the key that was pressed.
    TapEvent event;
    // The first enabled mapping of the event's key, as the list stood at capture time; none when
    // the key has none. Disabled mappings never appear.
    std::optional<KeyMapping> mapping;
    // The mapping is Caps Lock's and the HID layer carries it out (to its key, or through F18),
    // rather than the tap alone.
    bool isMappedInHIDLayer = false;
    // The main tap was running at capture time, so the mapping was in force.
    bool isInterceptionActive = false;
    // What a key with two roles did because of this event: its release tapped the alone key or
    // typed nothing, or this key made a held one take its held role.
    std::optional<DualRoleOutcome> dualRole;
};

}  // namespace orvane
