// The record of one keyboard event captured for the key event debugger.
#pragma once

#include "model/Uuid.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// Absent optionals do not apply to the event; the debugger shows nothing for them.
struct DebugEvent {
    Uuid id;
    std::chrono::system_clock::time_point timestamp;
    int eventType = 0;
    std::string eventTypeName;          // "keyDown", "keyUp", "flagsChanged", "systemDefined" or "unknown"
    std::optional<int> subtype;         // system-defined events
    std::optional<std::int64_t> data1;  // system-defined events
    std::optional<std::string> data1Hex;
    std::optional<int> keycode;         // key and flags events, after the Caps Lock translation
    std::optional<std::uint64_t> flags;
    std::optional<std::string> decodedInfo;       // "→ " and the key's name
    std::optional<std::string> interceptionInfo;  // what a mapping does with the key
    bool isInterceptionActive = false;
};

// "0x" and the upper-case hexadecimal digits of the 64-bit word, without leading zeros.
std::string hexWord(std::uint64_t value);

}  // namespace orvane
