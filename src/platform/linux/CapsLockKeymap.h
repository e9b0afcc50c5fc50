// Caps Lock remapped in the kernel's keymap of each USB keyboard, one layer below every reader of
// /dev/input: what orvane-hidutil does for the mapping store, and what the keyboard backend does for
// a keyboard plugged in later.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

// The scancode the kernel's HID layer reports in MSC_SCAN and keeps its keymap by: the usage page (7,
// Keyboard/Keypad) in the high 16 bits, the usage ID (0x39, Caps Lock) in the low ones.
inline constexpr std::uint32_t capsLockScancode = 0x70039;

// The user key mapping property, as the HID tool takes it:
//   {"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":30064771129,"HIDKeyboardModifierMappingDst":D}]}
// where D is a Keyboard/Keypad usage (0x700000000 + usage ID), or {"UserKeyMapping":[]} to clear.
struct UserKeyMapping {
    std::optional<std::uint16_t> capsLockTarget;  // the evdev key Caps Lock becomes; none: Caps Lock again
};
// The mapping the text asks for, or none with the reason in `error`: not JSON, another property, a
// source other than Caps Lock, more than one entry, or a destination with no Linux key.
std::optional<UserKeyMapping> parseUserKeyMapping(std::string_view text, std::string& error);

// What the state file remembers: the mapping in force, and each keyboard whose keymap was changed,
// with Caps Lock's key before and after. A keyboard is named by its input id, name, physical path
// and unique id, so it is found again under another /dev/input/eventN and by another process.
struct ChangedKeyboard {
    std::string device;
    std::uint16_t original = 0;
    std::uint16_t applied = 0;
    bool operator==(const ChangedKeyboard&) const = default;
};
struct KeymapState {
    std::optional<std::uint16_t> capsLockTarget;
    std::vector<ChangedKeyboard> keyboards;
};

// One keyboard's step. `current` is the key its Caps Lock scancode gives now, `known` the state's
// entry for it. A keyboard is ours when it still gives what we applied; otherwise it is taken only
// while it gives KEY_CAPSLOCK (one whose Caps Lock someone else remapped, e.g. a hwdb rule, is left
// alone). Gives the key to set, if any, and the entry to keep, if any.
struct KeyboardStep {
    std::optional<std::uint16_t> set;
    std::optional<ChangedKeyboard> keep;
};
KeyboardStep planKeyboard(const std::string& device, std::uint16_t current, const ChangedKeyboard* known,
                          std::optional<std::uint16_t> target);

// $XDG_RUNTIME_DIR/orvane-hidutil.json when XDG_RUNTIME_DIR is an absolute path, otherwise
// /tmp/orvane-hidutil-<uid>/state.json (a directory of the user's own, mode 0700). Kernel keymaps last
// until the keyboard goes away or the machine restarts, so runtime storage suits the record of them.
std::filesystem::path defaultKeymapStatePath();

// The state in the file; an empty state when the file is missing or unreadable.
KeymapState loadKeymapState(const std::filesystem::path& statePath);

struct KeymapResult {
    bool ok = true;
    std::string error;  // one line, when not ok
};

// Puts Caps Lock → target (none: Caps Lock itself) in force: on every event device under
// inputDirectory whose keymap gives KEY_CAPSLOCK for capsLockScancode, or what an earlier call
// applied, Caps Lock's key is set (EVIOCSKEYCODE_V2); a clear gives each changed keyboard its
// original key back. The state file records the mapping and the keyboards, written whole (a
// temporary file renamed over it) under a lock beside it, so tool runs and hot-plug calls in other
// processes see each other's changes. Without any keyboard the mapping still counts as set: it is in
// force for keyboards plugged in later. Fails when a device cannot be opened (no permission) or its
// keymap cannot be changed, or when the state cannot be written; keyboards that could be changed
// are changed and recorded all the same.
KeymapResult setCapsLockMapping(std::optional<std::uint16_t> target,
                                const std::filesystem::path& statePath = defaultKeymapStatePath(),
                                const std::filesystem::path& inputDirectory = "/dev/input");

// For the keyboard backend, when a keyboard appears: gives the event device open on `fd` the Caps
// Lock mapping in force (as the state file records it) and records the device, so that the next
// clear restores it. Does nothing to a device without the HID Caps Lock scancode, or when no mapping
// is in force. Call it once the device's node is open, before reading keys from it; a keymap rule
// that udev applies later to the same scancode makes the keyboard someone else's (see planKeyboard).
KeymapResult applyCapsLockMappingInForce(int fd, const std::filesystem::path& statePath = defaultKeymapStatePath());

}  // namespace orvane
