// The ordinary keys: macOS virtual key codes with their names, keycap symbols and HID usages.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace orvane {

// Raw values are the virtual key codes; they are the persistent identity of a key.
enum class KeyCode : int {
    a = 0,
    s = 1,
    d = 2,
    f = 3,
    h = 4,
    g = 5,
    z = 6,
    x = 7,
    c = 8,
    v = 9,
    b = 11,
    q = 12,
    w = 13,
    e = 14,
    r = 15,
    y = 16,
    t = 17,
    o = 31,
    u = 32,
    i = 34,
    p = 35,
    l = 37,
    j = 38,
    k = 40,
    n = 45,
    m = 46,
    one = 18,
    two = 19,
    three = 20,
    four = 21,
    five = 23,
    six = 22,
    seven = 26,
    eight = 28,
    nine = 25,
    zero = 29,
    capsLock = 57,
    escape = 53,
    tab = 48,
    space = 49,
    deleteKey = 51,
    forwardDelete = 117,
    returnKey = 36,
    backslash = 42,
    grave = 50,
    minus = 27,
    equal = 24,
    leftBracket = 33,
    rightBracket = 30,
    semicolon = 41,
    quote = 39,
    comma = 43,
    period = 47,
    slash = 44,
    f1 = 122,
    f2 = 120,
    f3 = 99,
    f4 = 118,
    f5 = 96,
    f6 = 97,
    f7 = 98,
    f8 = 100,
    f9 = 101,
    f10 = 109,
    f11 = 103,
    f12 = 111,
    f13 = 105,
    f14 = 107,
    f15 = 113,
    f16 = 106,
    f17 = 64,
    f18 = 79,
    f19 = 80,
    f20 = 90,
    leftArrow = 123,
    rightArrow = 124,
    downArrow = 125,
    upArrow = 126,
    home = 115,
    end = 119,
    pageUp = 116,
    pageDown = 121,
    globe = 179,
    launchpad = 177,
    dictation = 176,
    doNotDisturb = 178,
    missionControl = 160,
    leftShift = 56,
    rightShift = 60,
    leftControl = 59,
    rightControl = 62,
    leftOption = 58,
    rightOption = 61,
    leftCommand = 55,
    rightCommand = 54,
    function = 63,
    keypad0 = 82,
    keypad1 = 83,
    keypad2 = 84,
    keypad3 = 85,
    keypad4 = 86,
    keypad5 = 87,
    keypad6 = 88,
    keypad7 = 89,
    keypad8 = 91,
    keypad9 = 92,
    keypadDecimal = 65,
    keypadMultiply = 67,
    keypadPlus = 69,
    keypadClear = 71,
    keypadDivide = 75,
    keypadEnter = 76,
    keypadMinus = 78,
    keypadEquals = 81,};

inline constexpr std::size_t keyCodeCount = 114;

// Modifier flag bits of an event (CGEventFlags).
namespace EventFlag {
inline constexpr std::uint64_t alphaShift = 0x10000;  // Caps Lock
inline constexpr std::uint64_t shift = 0x20000;
inline constexpr std::uint64_t control = 0x40000;
inline constexpr std::uint64_t alternate = 0x80000;  // Option
inline constexpr std::uint64_t command = 0x100000;
inline constexpr std::uint64_t secondaryFn = 0x800000;
inline constexpr std::uint64_t nonCoalesced = 0x100;  // set on nearly every event
}  // namespace EventFlag

constexpr int rawValue(KeyCode key) { return static_cast<int>(key); }

// The key whose virtual key code this is, or none for codes that name no key.
std::optional<KeyCode> keyCodeFromRaw(long long code);

// All keys in declared order (the order of every list of all keys shown to the user).
std::span<const KeyCode> allKeyCodes();

// Position of the key in declared order (0-based).
std::size_t declaredIndex(KeyCode key);

std::string_view displayName(KeyCode key);
std::string_view symbol(KeyCode key);
// The identifier of the key as written in mapping files and scripts ("capsLock", "delete").
std::string_view caseName(KeyCode key);
std::optional<KeyCode> keyCodeFromCaseName(std::string_view name);

// Keyboard/Keypad page usage (0x700000000 + usage ID), or none for the six keys without one.
std::optional<std::uint64_t> hidUsage(KeyCode key);

// Caps Lock and the nine keys from Left Shift to Fn.
bool isModifierKey(KeyCode key);
// The flag that reports the key's state in a flags-changed event; none for other keys.
std::optional<std::uint64_t> modifierFlagMask(KeyCode key);
// The flag a left or right modifier key sets besides the shared one (Quartz's device-dependent bits).
std::optional<std::uint64_t> sideFlag(KeyCode key);

}  // namespace orvane
