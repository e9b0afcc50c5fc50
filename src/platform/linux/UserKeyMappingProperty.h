// The user key mapping property as the HID tool takes it on its command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvane {

// {"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":30064771129,"HIDKeyboardModifierMappingDst":D}]}
// where D is a Keyboard/Keypad usage (0x700000000 + usage ID), or {"UserKeyMapping":[]} to clear.
struct UserKeyMapping {
    std::optional<std::uint16_t> capsLockTarget;  // the evdev key Caps Lock becomes; none: Caps Lock again
};

// The mapping the text asks for, or none with the reason in `error`: not JSON, another property, a
// source other than Caps Lock, more than one entry, or a destination with no Linux key.
std::optional<UserKeyMapping> parseUserKeyMapping(std::string_view text, std::string& error);

}  // namespace orvane
