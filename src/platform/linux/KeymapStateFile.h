// The record of which keyboards' keymaps orvane-hidutil changed, shared by every process through one
// locked file.
#pragma once

#include "platform/linux/KeyboardKeymap.h"
#include "platform/linux/UniqueFd.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace orvane {

// A keyboard whose keymap was changed: its identity (keyboardIdentity), the scancode changed, and
// Caps Lock's key before and after.
struct ChangedKeyboard {
    std::string device;
    std::uint16_t original = 0;
    std::uint16_t applied = 0;
    std::uint32_t scancode = hidCapsLockScancode;
    bool operator==(const ChangedKeyboard&) const = default;
};

// The mapping in force and each changed keyboard.
struct KeymapState {
    std::optional<std::uint16_t> capsLockTarget;
    std::vector<ChangedKeyboard> keyboards;
};

// $XDG_RUNTIME_DIR/orvane-hidutil.json when XDG_RUNTIME_DIR is an absolute path, otherwise
// /tmp/orvane-hidutil-<uid>/state.json (a directory of the user's own, mode 0700). Kernel keymaps last
// until the keyboard goes away or the machine restarts, so runtime storage suits the record of them.
std::filesystem::path defaultKeymapStatePath();

// The state in the file; an empty state when the file is missing or unreadable.
KeymapState loadKeymapState(const std::filesystem::path& statePath);

// Written whole: a temporary file beside it, flushed to disk, renamed over it. The error, if any.
std::optional<std::string> saveKeymapState(const std::filesystem::path& statePath, const KeymapState& state);

// The state's directory exists and is the user's own; created (mode 0700) when missing, so that a
// directory under /tmp that someone else made is never used. The error, if any.
std::optional<std::string> prepareStateDirectory(const std::filesystem::path& directory);

// Takes an exclusive lock on "<state>.lock", held while `lock` lives. The error, if any.
std::optional<std::string> lockKeymapState(const std::filesystem::path& statePath, std::optional<UniqueFd>& lock);

}  // namespace orvane
