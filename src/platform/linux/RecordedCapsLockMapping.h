// The Caps Lock mapping in force one layer below the taps, as orvane-hidutil's state file records
// it: what a keyboard whose kernel keymap cannot be changed (a uinput keyboard, a driver without a
// keymap) must give for Caps Lock so that it behaves as every other keyboard does.
#pragma once

#include "platform/linux/KeymapStateFile.h"

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>

namespace orvane {

class RecordedCapsLockMapping {
public:
    explicit RecordedCapsLockMapping(std::filesystem::path statePath = defaultKeymapStatePath())
        : statePath_(std::move(statePath)) {}

    // The key Caps Lock gives now: the recorded target, or KEY_CAPSLOCK when none is in force. The
    // file is read again only when it was replaced since the last call (the tool renames a new one
    // over it), so a call costs one stat.
    std::uint16_t capsLockKey();

private:
    std::filesystem::path statePath_;
    struct stat seen_ {};
    bool known_ = false;
    std::uint16_t key_ = 0;
};

}  // namespace orvane
