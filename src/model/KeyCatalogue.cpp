#include "model/KeyCode.h"

#include "model/KeyCategory.h"

#include <array>

namespace orvane {
namespace {

struct KeyInfo {
    KeyCode code;
    std::string_view caseName;
    std::string_view displayName;
    std::string_view symbol;
    std::uint32_t hidUsageId;  // 0: the key has no usage on the keyboard page
    KeyCategory category;
    int categoryPosition;  // 1-based position in the category's list
};

// Declared order. Symbols are glyphs only for Caps Lock through Fn; elsewhere they repeat the name.
constexpr std::array<KeyInfo, keyCodeCount> keyTable{{
    {KeyCode::a, "a", "A", "A", 0x04, KeyCategory::letters, 1},
    {KeyCode::s, "s", "S", "S", 0x16, KeyCategory::letters, 19},
    {KeyCode::d, "d", "D", "D", 0x07, KeyCategory::letters, 4},
    {KeyCode::f, "f", "F", "F", 0x09, KeyCategory::letters, 6},
    {KeyCode::h, "h", "H", "H", 0x0B, KeyCategory::letters, 8},
    {KeyCode::g, "g", "G", "G", 0x0A, KeyCategory::letters, 7},
    {KeyCode::z, "z", "Z", "Z", 0x1D, KeyCategory::letters, 26},
    {KeyCode::x, "x", "X", "X", 0x1B, KeyCategory::letters, 24},
    {KeyCode::c, "c", "C", "C", 0x06, KeyCategory::letters, 3},
    {KeyCode::v, "v", "V", "V", 0x19, KeyCategory::letters, 22},
    {KeyCode::b, "b", "B", "B", 0x05, KeyCategory::letters, 2},
    {KeyCode::q, "q", "Q", "Q", 0x14, KeyCategory::letters, 17},
    {KeyCode::w, "w", "W", "W", 0x1A, KeyCategory::letters, 23},
    {KeyCode::e, "e", "E", "E", 0x08, KeyCategory::letters, 5},
    {KeyCode::r, "r", "R", "R", 0x15, KeyCategory::letters, 18},
    {KeyCode::y, "y", "Y", "Y", 0x1C, KeyCategory::letters, 25},
    {KeyCode::t, "t", "T", "T", 0x17, KeyCategory::letters, 20},
    {KeyCode::o, "o", "O", "O", 0x12, KeyCategory::letters, 15},
    {KeyCode::u, "u", "U", "U", 0x18, KeyCategory::letters, 21},
    {KeyCode::i, "i", "I", "I", 0x0C, KeyCategory::letters, 9},
    {KeyCode::p, "p", "P", "P", 0x13, KeyCategory::letters, 16},
    {KeyCode::l, "l", "L", "L", 0x0F, KeyCategory::letters, 12},
    {KeyCode::j, "j", "J", "J", 0x0D, KeyCategory::letters, 10},
    {KeyCode::k, "k", "K", "K", 0x0E, KeyCategory::letters, 11},
    {KeyCode::n, "n", "N", "N", 0x11, KeyCategory::letters, 14},
    {KeyCode::m, "m", "M", "M", 0x10, KeyCategory::letters, 13},
    {KeyCode::one, "one", "1", "1", 0x1E, KeyCategory::numbers, 1},
    {KeyCode::two, "two", "2", "2", 0x1F, KeyCategory::numbers, 2},
    {KeyCode::three, "three", "3", "3", 0x20, KeyCategory::numbers, 3},
    {KeyCode::four, "four", "4", "4", 0x21, KeyCategory::numbers, 4},
    {KeyCode::five, "five", "5", "5", 0x22, KeyCategory::numbers, 5},
    {KeyCode::six, "six", "6", "6", 0x23, KeyCategory::numbers, 6},
    {KeyCode::seven, "seven", "7", "7", 0x24, KeyCategory::numbers, 7},
    {KeyCode::eight, "eight", "8", "8", 0x25, KeyCategory::numbers, 8},
    {KeyCode::nine, "nine", "9", "9", 0x26, KeyCategory::numbers, 9},
    {KeyCode::zero, "zero", "0", "0", 0x27, KeyCategory::numbers, 10},
    {KeyCode::capsLock, "capsLock", "Caps Lock", "⇪", 0x39, KeyCategory::modifiers, 1},
    {KeyCode::escape, "escape", "Escape", "⎋", 0x29, KeyCategory::special, 1},
    {KeyCode::tab, "tab", "Tab", "⇥", 0x2B, KeyCategory::special, 2},
    {KeyCode::space, "space", "Space", "␣", 0x2C, KeyCategory::special, 3},
    {KeyCode::deleteKey, "delete", "Delete", "⌫", 0x2A, KeyCategory::special, 4},
    {KeyCode::forwardDelete, "forwardDelete", "Forward Delete", "⌦", 0x4C, KeyCategory::special, 5},
    {KeyCode::returnKey, "returnKey", "Return", "↩", 0x28, KeyCategory::special, 6},
    {KeyCode::backslash, "backslash", "\\", "\\", 0x31, KeyCategory::special, 7},
    {KeyCode::grave, "grave", "`", "`", 0x35, KeyCategory::special, 8},
    {KeyCode::minus, "minus", "-", "-", 0x2D, KeyCategory::special, 9},
    {KeyCode::equal, "equal", "=", "=", 0x2E, KeyCategory::special, 10},
    {KeyCode::leftBracket, "leftBracket", "[", "[", 0x2F, KeyCategory::special, 11},
    {KeyCode::rightBracket, "rightBracket", "]", "]", 0x30, KeyCategory::special, 12},
    {KeyCode::semicolon, "semicolon", ";", ";", 0x33, KeyCategory::special, 13},
    {KeyCode::quote, "quote", "'", "'", 0x34, KeyCategory::special, 14},
    {KeyCode::comma, "comma", ",", ",", 0x36, KeyCategory::special, 15},
    {KeyCode::period, "period", ".", ".", 0x37, KeyCategory::special, 16},
    {KeyCode::slash, "slash", "/", "/", 0x38, KeyCategory::special, 17},
    {KeyCode::f1, "f1", "F1", "F1", 0x3A, KeyCategory::fKeys, 1},
    {KeyCode::f2, "f2", "F2", "F2", 0x3B, KeyCategory::fKeys, 2},
    {KeyCode::f3, "f3", "F3", "F3", 0x3C, KeyCategory::fKeys, 3},
    {KeyCode::f4, "f4", "F4", "F4", 0x3D, KeyCategory::fKeys, 4},
    {KeyCode::f5, "f5", "F5", "F5", 0x3E, KeyCategory::fKeys, 5},
    {KeyCode::f6, "f6", "F6", "F6", 0x3F, KeyCategory::fKeys, 6},
    {KeyCode::f7, "f7", "F7", "F7", 0x40, KeyCategory::fKeys, 7},
    {KeyCode::f8, "f8", "F8", "F8", 0x41, KeyCategory::fKeys, 8},
    {KeyCode::f9, "f9", "F9", "F9", 0x42, KeyCategory::fKeys, 9},
    {KeyCode::f10, "f10", "F10", "F10", 0x43, KeyCategory::fKeys, 10},
    {KeyCode::f11, "f11", "F11", "F11", 0x44, KeyCategory::fKeys, 11},
    {KeyCode::f12, "f12", "F12", "F12", 0x45, KeyCategory::fKeys, 12},
    {KeyCode::f13, "f13", "F13", "F13", 0x68, KeyCategory::fKeys, 13},
    {KeyCode::f14, "f14", "F14", "F14", 0x69, KeyCategory::fKeys, 14},
    {KeyCode::f15, "f15", "F15", "F15", 0x6A, KeyCategory::fKeys, 15},
    {KeyCode::f16, "f16", "F16", "F16", 0x6B, KeyCategory::fKeys, 16},
    {KeyCode::f17, "f17", "F17", "F17", 0x6C, KeyCategory::fKeys, 17},
    {KeyCode::f18, "f18", "F18", "F18", 0x6D, KeyCategory::fKeys, 18},
    {KeyCode::f19, "f19", "F19", "F19", 0x6E, KeyCategory::fKeys, 19},
    {KeyCode::f20, "f20", "F20", "F20", 0x6F, KeyCategory::fKeys, 20},
    {KeyCode::leftArrow, "leftArrow", "←", "←", 0x50, KeyCategory::navigation, 1},
    {KeyCode::rightArrow, "rightArrow", "→", "→", 0x4F, KeyCategory::navigation, 2},
    {KeyCode::downArrow, "downArrow", "↓", "↓", 0x51, KeyCategory::navigation, 4},
    {KeyCode::upArrow, "upArrow", "↑", "↑", 0x52, KeyCategory::navigation, 3},
    {KeyCode::home, "home", "Home", "Home", 0x4A, KeyCategory::navigation, 5},
    {KeyCode::end, "end", "End", "End", 0x4D, KeyCategory::navigation, 6},
    {KeyCode::pageUp, "pageUp", "Page Up", "Page Up", 0x4B, KeyCategory::navigation, 7},
    {KeyCode::pageDown, "pageDown", "Page Down", "Page Down", 0x4E, KeyCategory::navigation, 8},
    {KeyCode::globe, "globe", "Globe", "🌐", 0, KeyCategory::media, 1},
    {KeyCode::launchpad, "launchpad", "Launchpad", "🚀", 0, KeyCategory::media, 2},
    {KeyCode::dictation, "dictation", "Dictation", "🎤", 0, KeyCategory::media, 3},
    {KeyCode::doNotDisturb, "doNotDisturb", "Do Not Disturb", "🌙", 0, KeyCategory::media, 4},
    {KeyCode::missionControl, "missionControl", "Mission Control", "⌃↑", 0, KeyCategory::media, 5},
    {KeyCode::leftShift, "leftShift", "Left Shift", "⇧", 0xE1, KeyCategory::modifiers, 2},
    {KeyCode::rightShift, "rightShift", "Right Shift", "⇧", 0xE5, KeyCategory::modifiers, 3},
    {KeyCode::leftControl, "leftControl", "Left Control", "⌃", 0xE0, KeyCategory::modifiers, 4},
    {KeyCode::rightControl, "rightControl", "Right Control", "⌃", 0xE4, KeyCategory::modifiers, 5},
    {KeyCode::leftOption, "leftOption", "Left Option", "⌥", 0xE2, KeyCategory::modifiers, 6},
    {KeyCode::rightOption, "rightOption", "Right Option", "⌥", 0xE6, KeyCategory::modifiers, 7},
    {KeyCode::leftCommand, "leftCommand", "Left Command", "⌘", 0xE3, KeyCategory::modifiers, 8},
    {KeyCode::rightCommand, "rightCommand", "Right Command", "⌘", 0xE7, KeyCategory::modifiers, 9},
    {KeyCode::function, "function", "Fn", "fn", 0, KeyCategory::modifiers, 10},
    {KeyCode::keypad0, "keypad0", "Keypad 0", "Keypad 0", 0x62, KeyCategory::numpad, 1},
    {KeyCode::keypad1, "keypad1", "Keypad 1", "Keypad 1", 0x59, KeyCategory::numpad, 2},
    {KeyCode::keypad2, "keypad2", "Keypad 2", "Keypad 2", 0x5A, KeyCategory::numpad, 3},
    {KeyCode::keypad3, "keypad3", "Keypad 3", "Keypad 3", 0x5B, KeyCategory::numpad, 4},
    {KeyCode::keypad4, "keypad4", "Keypad 4", "Keypad 4", 0x5C, KeyCategory::numpad, 5},
    {KeyCode::keypad5, "keypad5", "Keypad 5", "Keypad 5", 0x5D, KeyCategory::numpad, 6},
    {KeyCode::keypad6, "keypad6", "Keypad 6", "Keypad 6", 0x5E, KeyCategory::numpad, 7},
    {KeyCode::keypad7, "keypad7", "Keypad 7", "Keypad 7", 0x5F, KeyCategory::numpad, 8},
    {KeyCode::keypad8, "keypad8", "Keypad 8", "Keypad 8", 0x60, KeyCategory::numpad, 9},
    {KeyCode::keypad9, "keypad9", "Keypad 9", "Keypad 9", 0x61, KeyCategory::numpad, 10},
    {KeyCode::keypadDecimal, "keypadDecimal", "Keypad .", "Keypad .", 0x63, KeyCategory::numpad, 11},
    {KeyCode::keypadMultiply, "keypadMultiply", "Keypad *", "Keypad *", 0x55, KeyCategory::numpad, 12},
    {KeyCode::keypadPlus, "keypadPlus", "Keypad +", "Keypad +", 0x57, KeyCategory::numpad, 13},
    {KeyCode::keypadClear, "keypadClear", "Keypad Clear", "Keypad Clear", 0x53, KeyCategory::numpad, 18},
    {KeyCode::keypadDivide, "keypadDivide", "Keypad /", "Keypad /", 0x54, KeyCategory::numpad, 15},
    {KeyCode::keypadEnter, "keypadEnter", "Keypad Enter", "Keypad Enter", 0x58, KeyCategory::numpad, 16},
    {KeyCode::keypadMinus, "keypadMinus", "Keypad -", "Keypad -", 0x56, KeyCategory::numpad, 14},
    {KeyCode::keypadEquals, "keypadEquals", "Keypad =", "Keypad =", 0x67, KeyCategory::numpad, 17},}};

constexpr int highestKeyCode = 179;

constexpr std::array<std::int16_t, highestKeyCode + 1> makeRawIndex() {
    std::array<std::int16_t, highestKeyCode + 1> index{};
    for (auto& slot : index) slot = -1;
    for (std::size_t i = 0; i < keyTable.size(); ++i) index[rawValue(keyTable[i].code)] = static_cast<std::int16_t>(i);
    return index;
}

constexpr auto rawIndex = makeRawIndex();

constexpr std::array<KeyCode, keyCodeCount> makeAllKeys() {
    std::array<KeyCode, keyCodeCount> keys{};
    for (std::size_t i = 0; i < keyTable.size(); ++i) keys[i] = keyTable[i].code;
    return keys;
}

constexpr auto allKeys = makeAllKeys();

const KeyInfo& info(KeyCode key) { return keyTable[static_cast<std::size_t>(rawIndex[rawValue(key)])]; }

}  // namespace

std::optional<KeyCode> keyCodeFromRaw(long long code) {
    if (code < 0 || code > highestKeyCode || rawIndex[static_cast<std::size_t>(code)] < 0) return std::nullopt;
    return static_cast<KeyCode>(code);
}

std::span<const KeyCode> allKeyCodes() { return allKeys; }

std::size_t declaredIndex(KeyCode key) { return static_cast<std::size_t>(rawIndex[rawValue(key)]); }

std::string_view displayName(KeyCode key) { return info(key).displayName; }
std::string_view symbol(KeyCode key) { return info(key).symbol; }
std::string_view caseName(KeyCode key) { return info(key).caseName; }

std::optional<KeyCode> keyCodeFromCaseName(std::string_view name) {
    for (const auto& entry : keyTable)
        if (entry.caseName == name) return entry.code;
    return std::nullopt;
}

std::optional<std::uint64_t> hidUsage(KeyCode key) {
    const auto usageId = info(key).hidUsageId;
    if (usageId == 0) return std::nullopt;
    return 0x700000000ULL + usageId;
}

std::optional<std::uint64_t> sideFlag(KeyCode key) {
    switch (key) {
    case KeyCode::leftControl: return 0x1;
    case KeyCode::leftShift: return 0x2;
    case KeyCode::rightShift: return 0x4;
    case KeyCode::leftCommand: return 0x8;
    case KeyCode::rightCommand: return 0x10;
    case KeyCode::leftOption: return 0x20;
    case KeyCode::rightOption: return 0x40;
    case KeyCode::rightControl: return 0x2000;
    default: return std::nullopt;
    }
}

bool isModifierKey(KeyCode key) { return modifierFlagMask(key).has_value(); }

std::optional<std::uint64_t> modifierFlagMask(KeyCode key) {
    switch (key) {
    case KeyCode::capsLock: return EventFlag::alphaShift;
    case KeyCode::leftShift:
    case KeyCode::rightShift: return EventFlag::shift;
    case KeyCode::leftControl:
    case KeyCode::rightControl: return EventFlag::control;
    case KeyCode::leftOption:
    case KeyCode::rightOption: return EventFlag::alternate;
    case KeyCode::leftCommand:
    case KeyCode::rightCommand: return EventFlag::command;
    case KeyCode::function: return EventFlag::secondaryFn;
    default: return std::nullopt;
    }
}

KeyCategory categoryOf(KeyCode key) { return info(key).category; }

namespace {

struct CategoryInfo {
    KeyCategory category;
    std::string_view title;
};

constexpr std::array<CategoryInfo, keyCategoryCount> categoryTable{{
    {KeyCategory::letters, "Letters"},
    {KeyCategory::numbers, "Numbers"},
    {KeyCategory::fKeys, "F-Keys"},
    {KeyCategory::modifiers, "Modifiers"},
    {KeyCategory::special, "Special"},
    {KeyCategory::navigation, "Navigation"},
    {KeyCategory::numpad, "Numpad"},
    {KeyCategory::media, "Media & System"},
}};

constexpr std::array<KeyCategory, keyCategoryCount> allCategories{
    KeyCategory::letters, KeyCategory::numbers,    KeyCategory::fKeys,  KeyCategory::modifiers,
    KeyCategory::special, KeyCategory::navigation, KeyCategory::numpad, KeyCategory::media};

// Each category's keys ordered by their position in it, laid out one category after another.
struct CategoryLists {
    std::array<KeyCode, keyCodeCount> keys{};
    std::array<std::size_t, keyCategoryCount + 1> start{};
};

constexpr CategoryLists makeCategoryLists() {
    CategoryLists lists;
    std::size_t next = 0;
    for (std::size_t c = 0; c < keyCategoryCount; ++c) {
        lists.start[c] = next;
        for (int position = 1; position <= static_cast<int>(keyCodeCount); ++position)
            for (const auto& entry : keyTable)
                if (entry.category == allCategories[c] && entry.categoryPosition == position) lists.keys[next++] = entry.code;
    }
    lists.start[keyCategoryCount] = next;
    return lists;
}

constexpr auto categoryLists = makeCategoryLists();
static_assert(categoryLists.start[keyCategoryCount] == keyCodeCount, "every key lies in exactly one category");

}  // namespace

std::span<const KeyCategory> allKeyCategories() { return allCategories; }

std::string_view title(KeyCategory category) { return categoryTable[static_cast<std::size_t>(category)].title; }

std::optional<KeyCategory> keyCategoryFromTitle(std::string_view text) {
    for (const auto& entry : categoryTable)
        if (entry.title == text) return entry.category;
    return std::nullopt;
}

std::span<const KeyCode> keys(KeyCategory category) {
    const auto c = static_cast<std::size_t>(category);
    return std::span<const KeyCode>(categoryLists.keys).subspan(categoryLists.start[c], categoryLists.start[c + 1] - categoryLists.start[c]);
}

}  // namespace orvane
