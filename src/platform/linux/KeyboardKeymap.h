// Caps Lock's entry in one keyboard's kernel keymap, read and set through its event device.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// The scancodes a kernel keymap holds Caps Lock under, for the keymaps the kernel lets us change:
// the HID layer's (USB and Bluetooth keyboards) is the usage page (7, Keyboard/Keypad) in the high
// 16 bits and the usage ID (0x39) in the low ones, as MSC_SCAN reports it; atkbd's (PS/2 keyboards,
// most laptops' own) is the translated set 2 code.
inline constexpr std::uint32_t hidCapsLockScancode = 0x70039;
inline constexpr std::uint32_t atCapsLockScancode = 0x3a;

struct CapsLockEntry {
    std::uint32_t scancode = 0;
    std::uint16_t key = 0;  // the key that scancode gives now
};

// Caps Lock's entry on the event device open on `fd`: the first of the scancodes above its keymap
// knows. None for a device whose keymap cannot be read or changed that way (a uinput keyboard, a
// driver without a keymap, a device with no keys).
std::optional<CapsLockEntry> capsLockEntry(int fd);

// Sets the key `scancode` gives; false with errno set when the driver refuses.
bool setKeyForScancode(int fd, std::uint32_t scancode, std::uint16_t key);

// The device's name in the state file: input id, name, physical path, unique id, so that it is found
// again under another /dev/input/eventN and by another process.
std::string keyboardIdentity(int fd);

}  // namespace orvane
