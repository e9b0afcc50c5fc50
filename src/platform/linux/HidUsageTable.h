// Keyboard-page HID usages and the Linux key codes the kernel's HID driver gives them.
#pragma once

#include <cstdint>
#include <optional>

namespace orvane::hidusage {

// Usage ids of page 7 (0x04 for A … 0xE7 for the right GUI key), without the page.
std::optional<std::uint16_t> evdevCodeForUsage(std::uint32_t usageId);
// The inverse; a code several usages share (Linux's KEY_BACKSLASH) answers the first of them.
std::optional<std::uint32_t> usageForEvdevCode(std::uint16_t code);

}  // namespace orvane::hidusage
