// Keys of the USB HID Keyboard/Keypad page (0x07) and the Linux evdev key codes the kernel's HID
// input layer gives them.
#pragma once

#include <cstdint>
#include <optional>

namespace orvane {

// The evdev key code (KEY_*) of a Keyboard/Keypad usage ID, 0x04 to 0xE7, given without the page
// (Escape is 0x29, F18 0x6D); none for the usages the kernel leaves as KEY_UNKNOWN and for ids out
// of that range.
std::optional<std::uint16_t> evdevCodeForUsage(std::uint32_t usageId);

// The usage ID of an evdev key code, none for codes no keyboard usage produces. Where the kernel
// gives several usages one code, the answer is the usual key's: KEY_BACKSLASH is 0x31 (not Non-US #,
// 0x32), KEY_DELETE is Delete Forward 0x4C (not Clear 0x9C or Keypad Clear 0xD8).
std::optional<std::uint32_t> usageForEvdevCode(std::uint16_t code);

}  // namespace orvane
