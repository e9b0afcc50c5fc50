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
// Caps Lock's key before and after. While a change is under way the record names the key being
// replaced too: a run killed between the record and the keymap leaves the keyboard giving either.
struct ChangedKeyboard {
    std::string device;
    std::uint16_t original = 0;
    std::uint16_t applied = 0;
    std::uint32_t scancode = hidCapsLockScancode;
    std::optional<std::uint16_t> replacing = std::nullopt;
    bool operator==(const ChangedKeyboard&) const = default;
};

// The mapping in force and each changed keyboard.
struct KeymapState {
    std::optional<std::uint16_t> capsLockTarget;
    std::vector<ChangedKeyboard> keyboards;
};

// $XDG_RUNTIME_DIR/orvane-hidutil.json when XDG_RUNTIME_DIR is an absolute path (kernel keymaps last
// until the keyboard goes away or the machine restarts, so runtime storage suits the record of them);
// otherwise orvane-hidutil/state.json in the user's cache folder ($XDG_CACHE_HOME, or ~/.cache), a
// place no other user can take first, as they could a name under /tmp.
std::filesystem::path defaultKeymapStatePath();

// The state in the file; an empty state when there is no file. None, with one line in `error`, when
// the file cannot be read, is no regular file (a FIFO is never waited on) or holds no state: the
// keyboards it names must not be forgotten, so the caller changes nothing.
std::optional<KeymapState> readKeymapState(const std::filesystem::path& statePath, std::string& error);
// The same, empty where readKeymapState fails.
KeymapState loadKeymapState(const std::filesystem::path& statePath);

// Written whole: a new temporary file of a unique name beside it (never an existing file or a link),
// flushed to disk, renamed over it. The error, if any.
std::optional<std::string> saveKeymapState(const std::filesystem::path& statePath, const KeymapState& state);

// Takes an exclusive lock on "<state>.lock", held while `lock` lives. The error, if any.
std::optional<std::string> lockKeymapState(const std::filesystem::path& statePath, std::optional<UniqueFd>& lock);

}  // namespace orvane
