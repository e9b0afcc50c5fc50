// What one keyboard's Caps Lock entry becomes when a mapping is put in force.
#pragma once

#include "platform/linux/KeymapStateFile.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// `current` is the key its Caps Lock scancode gives now, `known` the state's entry for it. A keyboard
// is ours when it still gives what we applied (or the key a change cut short was replacing); otherwise it is taken only while it gives
// KEY_CAPSLOCK (one whose Caps Lock someone else remapped, e.g. a hwdb rule, is left alone). Gives
// the key to set, if any, and the entry to keep, if any.
struct KeyboardStep {
    std::optional<std::uint16_t> set;
    std::optional<ChangedKeyboard> keep;
};
KeyboardStep planKeyboard(const std::string& device, std::uint16_t current, const ChangedKeyboard* known,
                          std::optional<std::uint16_t> target);

}  // namespace orvane
