// Which catalogue key, or which media/system key, a Linux key code stands for, and back.
#pragma once

#include "model/KeyCode.h"
#include "model/SystemKeyID.h"

#include <cstdint>
#include <optional>
#include <variant>

namespace orvane::evdevkeys {

// Highest Linux key code the backend reads or writes (KEY_MAX's range without the buttons above it).
inline constexpr std::uint16_t highestCode = 0x2bf;

// What a Linux key code means to the event taps; monostate for a key outside the catalogue.
using Meaning = std::variant<std::monostate, KeyCode, SystemKeyID>;

// Ordinary keys go through their HID usage, as the kernel's HID driver maps them; keys without a
// usage and the media keys have fixed codes.
Meaning meaningOf(std::uint16_t code);
std::optional<std::uint16_t> codeFor(KeyCode key);
std::optional<std::uint16_t> codeFor(SystemKeyID key);

// Mouse, joystick and other button codes: never written to a keyboard.
constexpr bool isButtonCode(std::uint16_t code) { return (code >= 0x100 && code < 0x160) || code >= 0x2c0; }

}  // namespace orvane::evdevkeys
