#include "platform/linux/HidUsageTable.h"

#include <array>

namespace orvane::hidusage {
namespace {

constexpr std::uint8_t none = 0;

// Linux's hid_keyboard table for usages 0x00–0x8F and 0xE0–0xE7 (0: the kernel gives none).
constexpr std::array<std::uint8_t, 0x90> lowUsages{
    0,   0,   0,   0,   30,  48,  46,  32,  18,  33,  34,  35,  23,  36,  37,  38,   // 0x00
    50,  49,  24,  25,  16,  19,  31,  20,  22,  47,  17,  45,  21,  44,  2,   3,    // 0x10
    4,   5,   6,   7,   8,   9,   10,  11,  28,  1,   14,  15,  57,  12,  13,  26,   // 0x20
    27,  43,  43,  39,  40,  41,  51,  52,  53,  58,  59,  60,  61,  62,  63,  64,   // 0x30
    65,  66,  67,  68,  87,  88,  99,  70,  119, 110, 102, 104, 111, 107, 109, 106,  // 0x40
    105, 108, 103, 69,  98,  55,  74,  78,  96,  79,  80,  81,  75,  76,  77,  71,   // 0x50
    72,  73,  82,  83,  86,  127, 116, 117, 183, 184, 185, 186, 187, 188, 189, 190,  // 0x60
    191, 192, 193, 194, 134, 138, 130, 132, 128, 129, 131, 137, 133, 135, 136, 113,  // 0x70
    115, 114, none, none, none, 121, none, 89, 93, 124, 92,  94,  95,  none, none, none,  // 0x80
};
constexpr std::array<std::uint8_t, 8> modifierUsages{29, 42, 56, 125, 97, 54, 100, 126};  // 0xE0–0xE7

}  // namespace

std::optional<std::uint16_t> evdevCodeForUsage(std::uint32_t usageId) {
    std::uint8_t code = none;
    if (usageId < lowUsages.size()) code = lowUsages[usageId];
    else if (usageId >= 0xE0 && usageId <= 0xE7) code = modifierUsages[usageId - 0xE0];
    if (code == none) return std::nullopt;
    return code;
}

std::optional<std::uint32_t> usageForEvdevCode(std::uint16_t code) {
    if (code == none) return std::nullopt;
    for (std::uint32_t usage = 0; usage < lowUsages.size(); ++usage)
        if (lowUsages[usage] == code) return usage;
    for (std::uint32_t i = 0; i < modifierUsages.size(); ++i)
        if (modifierUsages[i] == code) return 0xE0 + i;
    return std::nullopt;
}

}  // namespace orvane::hidusage
