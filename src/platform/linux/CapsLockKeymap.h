// Caps Lock remapped in the kernel's keymap of each keyboard whose keymap can be changed (USB,
// Bluetooth and PS/2 ones), one layer below every reader of /dev/input: what orvane-hidutil does for
// the mapping store, and what the keyboard backend does for a keyboard plugged in later.
#pragma once

#include "platform/linux/KeyboardPlan.h"
#include "platform/linux/KeymapStateFile.h"
#include "platform/linux/UserKeyMappingProperty.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace orvane {

struct KeymapResult {
    bool ok = true;
    std::string error;  // one line, when not ok
};

// Puts Caps Lock → target (none: Caps Lock itself) in force: on every event device under
// inputDirectory whose keymap gives KEY_CAPSLOCK for Caps Lock's scancode, or what an earlier call
// applied, Caps Lock's key is set (EVIOCSKEYCODE_V2); a clear gives each changed keyboard its
// original key back. The state file records the mapping and the keyboards, written whole under a
// lock beside it, so tool runs and hot-plug calls in other processes see each other's changes.
// Keyboards without a settable keymap are not touched: the keyboard backend applies the recorded
// mapping to them itself. Without any keyboard the mapping still counts as set: it is in force for
// keyboards plugged in later. Fails when a device cannot be opened (no permission) or its keymap
// cannot be changed, or when the state cannot be written; keyboards that could be changed are
// changed and recorded all the same.
KeymapResult setCapsLockMapping(std::optional<std::uint16_t> target,
                                const std::filesystem::path& statePath = defaultKeymapStatePath(),
                                const std::filesystem::path& inputDirectory = "/dev/input");

// For the keyboard backend, when a keyboard appears: gives the event device open on `fd` the Caps
// Lock mapping in force (as the state file records it) and records the device, so that the next
// clear restores it. Does nothing to a device without a Caps Lock keymap entry, or when no mapping
// is in force. Call it once the device's node is open, before reading keys from it; a keymap rule
// that udev applies later to the same scancode makes the keyboard someone else's (see planKeyboard).
KeymapResult applyCapsLockMappingInForce(int fd, const std::filesystem::path& statePath = defaultKeymapStatePath());

}  // namespace orvane
