// The key catalogue checked as whole tables against the published key list.
#include "model/KeyCategory.h"
#include "model/KeyCode.h"
#include "model/SystemKeyID.h"

#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>

using namespace orvane;

namespace {

struct ExpectedKey {
    std::size_t declaredIndex;
    const char* caseName;
    int code;
    const char* displayName;
    const char* symbol;
    std::optional<std::uint64_t> hidUsage;
    const char* categoryTitle;  // written the way the code names the category case
    int categoryPosition;
};

const ExpectedKey expectedKeys[] = {
    {0, "a", 0x00, "A", "A", 0x700000004ULL, "letters", 1},
    {1, "s", 0x01, "S", "S", 0x700000016ULL, "letters", 19},
    {2, "d", 0x02, "D", "D", 0x700000007ULL, "letters", 4},
    {3, "f", 0x03, "F", "F", 0x700000009ULL, "letters", 6},
    {4, "h", 0x04, "H", "H", 0x70000000BULL, "letters", 8},
    {5, "g", 0x05, "G", "G", 0x70000000AULL, "letters", 7},
    {6, "z", 0x06, "Z", "Z", 0x70000001DULL, "letters", 26},
    {7, "x", 0x07, "X", "X", 0x70000001BULL, "letters", 24},
    {8, "c", 0x08, "C", "C", 0x700000006ULL, "letters", 3},
    {9, "v", 0x09, "V", "V", 0x700000019ULL, "letters", 22},
    {10, "b", 0x0B, "B", "B", 0x700000005ULL, "letters", 2},
    {11, "q", 0x0C, "Q", "Q", 0x700000014ULL, "letters", 17},
    {12, "w", 0x0D, "W", "W", 0x70000001AULL, "letters", 23},
    {13, "e", 0x0E, "E", "E", 0x700000008ULL, "letters", 5},
    {14, "r", 0x0F, "R", "R", 0x700000015ULL, "letters", 18},
    {15, "y", 0x10, "Y", "Y", 0x70000001CULL, "letters", 25},
    {16, "t", 0x11, "T", "T", 0x700000017ULL, "letters", 20},
    {17, "o", 0x1F, "O", "O", 0x700000012ULL, "letters", 15},
    {18, "u", 0x20, "U", "U", 0x700000018ULL, "letters", 21},
    {19, "i", 0x22, "I", "I", 0x70000000CULL, "letters", 9},
    {20, "p", 0x23, "P", "P", 0x700000013ULL, "letters", 16},
    {21, "l", 0x25, "L", "L", 0x70000000FULL, "letters", 12},
    {22, "j", 0x26, "J", "J", 0x70000000DULL, "letters", 10},
    {23, "k", 0x28, "K", "K", 0x70000000EULL, "letters", 11},
    {24, "n", 0x2D, "N", "N", 0x700000011ULL, "letters", 14},
    {25, "m", 0x2E, "M", "M", 0x700000010ULL, "letters", 13},
    {26, "one", 0x12, "1", "1", 0x70000001EULL, "numbers", 1},
    {27, "two", 0x13, "2", "2", 0x70000001FULL, "numbers", 2},
    {28, "three", 0x14, "3", "3", 0x700000020ULL, "numbers", 3},
    {29, "four", 0x15, "4", "4", 0x700000021ULL, "numbers", 4},
    {30, "five", 0x17, "5", "5", 0x700000022ULL, "numbers", 5},
    {31, "six", 0x16, "6", "6", 0x700000023ULL, "numbers", 6},
    {32, "seven", 0x1A, "7", "7", 0x700000024ULL, "numbers", 7},
    {33, "eight", 0x1C, "8", "8", 0x700000025ULL, "numbers", 8},
    {34, "nine", 0x19, "9", "9", 0x700000026ULL, "numbers", 9},
    {35, "zero", 0x1D, "0", "0", 0x700000027ULL, "numbers", 10},
    {36, "capsLock", 0x39, "Caps Lock", "\U000021EA", 0x700000039ULL, "modifiers", 1},
    {37, "escape", 0x35, "Escape", "\U0000238B", 0x700000029ULL, "special", 1},
    {38, "tab", 0x30, "Tab", "\U000021E5", 0x70000002BULL, "special", 2},
    {39, "space", 0x31, "Space", "\U00002423", 0x70000002CULL, "special", 3},
    {40, "delete", 0x33, "Delete", "\U0000232B", 0x70000002AULL, "special", 4},
    {41, "forwardDelete", 0x75, "Forward Delete", "\U00002326", 0x70000004CULL, "special", 5},
    {42, "returnKey", 0x24, "Return", "\U000021A9", 0x700000028ULL, "special", 6},
    {43, "backslash", 0x2A, "\x5C", "\x5C", 0x700000031ULL, "special", 7},
    {44, "grave", 0x32, "\x60", "\x60", 0x700000035ULL, "special", 8},
    {45, "minus", 0x1B, "-", "-", 0x70000002DULL, "special", 9},
    {46, "equal", 0x18, "=", "=", 0x70000002EULL, "special", 10},
    {47, "leftBracket", 0x21, "[", "[", 0x70000002FULL, "special", 11},
    {48, "rightBracket", 0x1E, "]", "]", 0x700000030ULL, "special", 12},
    {49, "semicolon", 0x29, ";", ";", 0x700000033ULL, "special", 13},
    {50, "quote", 0x27, "'", "'", 0x700000034ULL, "special", 14},
    {51, "comma", 0x2B, ",", ",", 0x700000036ULL, "special", 15},
    {52, "period", 0x2F, ".", ".", 0x700000037ULL, "special", 16},
    {53, "slash", 0x2C, "/", "/", 0x700000038ULL, "special", 17},
    {54, "f1", 0x7A, "F1", "F1", 0x70000003AULL, "fKeys", 1},
    {55, "f2", 0x78, "F2", "F2", 0x70000003BULL, "fKeys", 2},
    {56, "f3", 0x63, "F3", "F3", 0x70000003CULL, "fKeys", 3},
    {57, "f4", 0x76, "F4", "F4", 0x70000003DULL, "fKeys", 4},
    {58, "f5", 0x60, "F5", "F5", 0x70000003EULL, "fKeys", 5},
    {59, "f6", 0x61, "F6", "F6", 0x70000003FULL, "fKeys", 6},
    {60, "f7", 0x62, "F7", "F7", 0x700000040ULL, "fKeys", 7},
    {61, "f8", 0x64, "F8", "F8", 0x700000041ULL, "fKeys", 8},
    {62, "f9", 0x65, "F9", "F9", 0x700000042ULL, "fKeys", 9},
    {63, "f10", 0x6D, "F10", "F10", 0x700000043ULL, "fKeys", 10},
    {64, "f11", 0x67, "F11", "F11", 0x700000044ULL, "fKeys", 11},
    {65, "f12", 0x6F, "F12", "F12", 0x700000045ULL, "fKeys", 12},
    {66, "f13", 0x69, "F13", "F13", 0x700000068ULL, "fKeys", 13},
    {67, "f14", 0x6B, "F14", "F14", 0x700000069ULL, "fKeys", 14},
    {68, "f15", 0x71, "F15", "F15", 0x70000006AULL, "fKeys", 15},
    {69, "f16", 0x6A, "F16", "F16", 0x70000006BULL, "fKeys", 16},
    {70, "f17", 0x40, "F17", "F17", 0x70000006CULL, "fKeys", 17},
    {71, "f18", 0x4F, "F18", "F18", 0x70000006DULL, "fKeys", 18},
    {72, "f19", 0x50, "F19", "F19", 0x70000006EULL, "fKeys", 19},
    {73, "f20", 0x5A, "F20", "F20", 0x70000006FULL, "fKeys", 20},
    {74, "leftArrow", 0x7B, "\U00002190", "\U00002190", 0x700000050ULL, "navigation", 1},
    {75, "rightArrow", 0x7C, "\U00002192", "\U00002192", 0x70000004FULL, "navigation", 2},
    {76, "downArrow", 0x7D, "\U00002193", "\U00002193", 0x700000051ULL, "navigation", 4},
    {77, "upArrow", 0x7E, "\U00002191", "\U00002191", 0x700000052ULL, "navigation", 3},
    {78, "home", 0x73, "Home", "Home", 0x70000004AULL, "navigation", 5},
    {79, "end", 0x77, "End", "End", 0x70000004DULL, "navigation", 6},
    {80, "pageUp", 0x74, "Page Up", "Page Up", 0x70000004BULL, "navigation", 7},
    {81, "pageDown", 0x79, "Page Down", "Page Down", 0x70000004EULL, "navigation", 8},
    {82, "globe", 0xB3, "Globe", "\U0001F310", std::nullopt, "media", 1},
    {83, "launchpad", 0xB1, "Launchpad", "\U0001F680", std::nullopt, "media", 2},
    {84, "dictation", 0xB0, "Dictation", "\U0001F3A4", std::nullopt, "media", 3},
    {85, "doNotDisturb", 0xB2, "Do Not Disturb", "\U0001F319", std::nullopt, "media", 4},
    {86, "missionControl", 0xA0, "Mission Control", "\U00002303\U00002191", std::nullopt, "media", 5},
    {87, "leftShift", 0x38, "Left Shift", "\U000021E7", 0x7000000E1ULL, "modifiers", 2},
    {88, "rightShift", 0x3C, "Right Shift", "\U000021E7", 0x7000000E5ULL, "modifiers", 3},
    {89, "leftControl", 0x3B, "Left Control", "\U00002303", 0x7000000E0ULL, "modifiers", 4},
    {90, "rightControl", 0x3E, "Right Control", "\U00002303", 0x7000000E4ULL, "modifiers", 5},
    {91, "leftOption", 0x3A, "Left Option", "\U00002325", 0x7000000E2ULL, "modifiers", 6},
    {92, "rightOption", 0x3D, "Right Option", "\U00002325", 0x7000000E6ULL, "modifiers", 7},
    {93, "leftCommand", 0x37, "Left Command", "\U00002318", 0x7000000E3ULL, "modifiers", 8},
    {94, "rightCommand", 0x36, "Right Command", "\U00002318", 0x7000000E7ULL, "modifiers", 9},
    {95, "function", 0x3F, "Fn", "fn", std::nullopt, "modifiers", 10},
    {96, "keypad0", 0x52, "Keypad 0", "Keypad 0", 0x700000062ULL, "numpad", 1},
    {97, "keypad1", 0x53, "Keypad 1", "Keypad 1", 0x700000059ULL, "numpad", 2},
    {98, "keypad2", 0x54, "Keypad 2", "Keypad 2", 0x70000005AULL, "numpad", 3},
    {99, "keypad3", 0x55, "Keypad 3", "Keypad 3", 0x70000005BULL, "numpad", 4},
    {100, "keypad4", 0x56, "Keypad 4", "Keypad 4", 0x70000005CULL, "numpad", 5},
    {101, "keypad5", 0x57, "Keypad 5", "Keypad 5", 0x70000005DULL, "numpad", 6},
    {102, "keypad6", 0x58, "Keypad 6", "Keypad 6", 0x70000005EULL, "numpad", 7},
    {103, "keypad7", 0x59, "Keypad 7", "Keypad 7", 0x70000005FULL, "numpad", 8},
    {104, "keypad8", 0x5B, "Keypad 8", "Keypad 8", 0x700000060ULL, "numpad", 9},
    {105, "keypad9", 0x5C, "Keypad 9", "Keypad 9", 0x700000061ULL, "numpad", 10},
    {106, "keypadDecimal", 0x41, "Keypad .", "Keypad .", 0x700000063ULL, "numpad", 11},
    {107, "keypadMultiply", 0x43, "Keypad *", "Keypad *", 0x700000055ULL, "numpad", 12},
    {108, "keypadPlus", 0x45, "Keypad +", "Keypad +", 0x700000057ULL, "numpad", 13},
    {109, "keypadClear", 0x47, "Keypad Clear", "Keypad Clear", 0x700000053ULL, "numpad", 18},
    {110, "keypadDivide", 0x4B, "Keypad /", "Keypad /", 0x700000054ULL, "numpad", 15},
    {111, "keypadEnter", 0x4C, "Keypad Enter", "Keypad Enter", 0x700000058ULL, "numpad", 16},
    {112, "keypadMinus", 0x4E, "Keypad -", "Keypad -", 0x700000056ULL, "numpad", 14},
    {113, "keypadEquals", 0x51, "Keypad =", "Keypad =", 0x700000067ULL, "numpad", 17},};

std::string categoryCaseName(KeyCategory category) {
    switch (category) {
    case KeyCategory::letters: return "letters";
    case KeyCategory::numbers: return "numbers";
    case KeyCategory::fKeys: return "fKeys";
    case KeyCategory::modifiers: return "modifiers";
    case KeyCategory::special: return "special";
    case KeyCategory::navigation: return "navigation";
    case KeyCategory::numpad: return "numpad";
    case KeyCategory::media: return "media";
    }
    return "?";
}

}  // namespace

TEST(KeyCatalogue, everyKeyMatchesItsPublishedRow) {
    ASSERT_EQ(allKeyCodes().size(), std::size(expectedKeys));
    for (const auto& row : expectedKeys) {
        SCOPED_TRACE(row.caseName);
        const auto key = keyCodeFromRaw(row.code);
        ASSERT_TRUE(key.has_value());
        EXPECT_EQ(rawValue(*key), row.code);
        EXPECT_EQ(allKeyCodes()[row.declaredIndex], *key);
        EXPECT_EQ(declaredIndex(*key), row.declaredIndex);
        EXPECT_EQ(caseName(*key), row.caseName);
        EXPECT_EQ(keyCodeFromCaseName(row.caseName), key);
        EXPECT_EQ(displayName(*key), row.displayName);
        EXPECT_EQ(symbol(*key), row.symbol);
        EXPECT_EQ(hidUsage(*key), row.hidUsage);
        const KeyCategory category = categoryOf(*key);
        EXPECT_EQ(categoryCaseName(category), row.categoryTitle);
        const auto list = keys(category);
        ASSERT_GE(list.size(), static_cast<std::size_t>(row.categoryPosition));
        EXPECT_EQ(list[static_cast<std::size_t>(row.categoryPosition - 1)], *key);
    }
}

TEST(KeyCatalogue, codesThatNameNoKeyYieldNone) {
    std::set<int> named;
    for (const auto& row : expectedKeys) named.insert(row.code);
    const std::set<int> unnamedBelow127{10, 52, 66, 68, 70, 72, 73, 74, 77, 93, 94, 95, 102, 104, 108, 110, 112, 114};
    for (int code = -3; code <= 400; ++code) {
        SCOPED_TRACE(code);
        const bool expectKey = (code >= 0 && code <= 126 && !unnamedBelow127.count(code)) ||
                               code == 160 || (code >= 176 && code <= 179);
        EXPECT_EQ(keyCodeFromRaw(code).has_value(), expectKey);
        EXPECT_EQ(named.count(code) == 1, expectKey);
    }
    EXPECT_FALSE(keyCodeFromRaw(-1LL << 40).has_value());
    EXPECT_FALSE(keyCodeFromRaw(1LL << 40).has_value());
}

TEST(KeyCatalogue, modifierKeysAndTheirFlags) {
    const std::pair<KeyCode, std::uint64_t> modifiers[] = {
        {KeyCode::capsLock, 0x10000},      {KeyCode::leftShift, 0x20000},    {KeyCode::rightShift, 0x20000},
        {KeyCode::leftControl, 0x40000},   {KeyCode::rightControl, 0x40000}, {KeyCode::leftOption, 0x80000},
        {KeyCode::rightOption, 0x80000},   {KeyCode::leftCommand, 0x100000}, {KeyCode::rightCommand, 0x100000},
        {KeyCode::function, 0x800000},
    };
    std::size_t modifierCount = 0;
    for (const KeyCode key : allKeyCodes()) {
        SCOPED_TRACE(std::string(caseName(key)));
        std::optional<std::uint64_t> expected;
        for (const auto& [modifier, mask] : modifiers)
            if (modifier == key) expected = mask;
        EXPECT_EQ(modifierFlagMask(key), expected);
        EXPECT_EQ(isModifierKey(key), expected.has_value());
        modifierCount += isModifierKey(key);
    }
    EXPECT_EQ(modifierCount, 10u);
}

TEST(KeyCatalogue, systemKeysByType) {
    struct Row {
        SystemKeyID id;
        int raw;
        const char* name;
        const char* symbol;
    };
    const Row rows[] = {
        {SystemKeyID::volumeUp, 0, "Volume Up", "\U0001F50A"},
        {SystemKeyID::volumeDown, 1, "Volume Down", "\U0001F509"},
        {SystemKeyID::brightnessUp, 2, "Brightness Up", "\U0001F506"},
        {SystemKeyID::brightnessDown, 3, "Brightness Down", "\U0001F505"},
        {SystemKeyID::missionControl, 4, "Mission Control", "\u2303\u2191"},
        {SystemKeyID::keyboardBacklightDown, 5, "Keyboard Backlight Down", "\u2328\uFE0F-"},
        {SystemKeyID::keyboardBacklightUp, 6, "Keyboard Backlight Up", "\u2328\uFE0F+"},
        {SystemKeyID::mute, 7, "Mute", "\U0001F507"},
        {SystemKeyID::playPause, 16, "Play/Pause", "\u23EF"},
        {SystemKeyID::nextTrack, 19, "Next Track", "\u23ED"},
        {SystemKeyID::previousTrack, 20, "Previous Track", "\u23EE"},
        {SystemKeyID::launchpad, 131, "Launchpad", "\U0001F680"},
    };
    ASSERT_EQ(allSystemKeys().size(), std::size(rows));
    std::set<int> named;
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(rows[i].name);
        EXPECT_EQ(allSystemKeys()[i], rows[i].id);
        EXPECT_EQ(rawValue(rows[i].id), rows[i].raw);
        EXPECT_EQ(systemKeyFromRaw(rows[i].raw), rows[i].id);
        EXPECT_EQ(displayName(rows[i].id), rows[i].name);
        EXPECT_EQ(symbol(rows[i].id), rows[i].symbol);
        named.insert(rows[i].raw);
    }
    for (int raw = -2; raw < 300; ++raw) {
        EXPECT_EQ(systemKeyFromRaw(raw).has_value(), named.count(raw) == 1) << raw;
    }
}

TEST(KeyCatalogue, categoriesInPickerOrder) {
    const std::pair<const char*, std::vector<const char*>> expected[] = {
        {"Letters", {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m",
                     "n", "o", "p", "q", "r", "s", "t", "u", "v", "w", "x", "y", "z"}},
        {"Numbers", {"one", "two", "three", "four", "five", "six", "seven", "eight", "nine", "zero"}},
        {"F-Keys", {"f1", "f2", "f3", "f4", "f5", "f6", "f7", "f8", "f9", "f10",
                    "f11", "f12", "f13", "f14", "f15", "f16", "f17", "f18", "f19", "f20"}},
        {"Modifiers", {"capsLock", "leftShift", "rightShift", "leftControl", "rightControl", "leftOption",
                       "rightOption", "leftCommand", "rightCommand", "function"}},
        {"Special", {"escape", "tab", "space", "delete", "forwardDelete", "returnKey", "backslash", "grave", "minus",
                     "equal", "leftBracket", "rightBracket", "semicolon", "quote", "comma", "period", "slash"}},
        {"Navigation", {"leftArrow", "rightArrow", "upArrow", "downArrow", "home", "end", "pageUp", "pageDown"}},
        {"Numpad", {"keypad0", "keypad1", "keypad2", "keypad3", "keypad4", "keypad5", "keypad6", "keypad7", "keypad8",
                    "keypad9", "keypadDecimal", "keypadMultiply", "keypadPlus", "keypadMinus", "keypadDivide",
                    "keypadEnter", "keypadEquals", "keypadClear"}},
        {"Media & System", {"globe", "launchpad", "dictation", "doNotDisturb", "missionControl"}},
    };
    ASSERT_EQ(allKeyCategories().size(), std::size(expected));
    for (std::size_t c = 0; c < std::size(expected); ++c) {
        const KeyCategory category = allKeyCategories()[c];
        SCOPED_TRACE(expected[c].first);
        EXPECT_EQ(title(category), expected[c].first);
        EXPECT_EQ(keyCategoryFromTitle(expected[c].first), category);
        std::vector<std::string> names;
        for (const KeyCode key : keys(category)) names.emplace_back(caseName(key));
        EXPECT_EQ(names, std::vector<std::string>(expected[c].second.begin(), expected[c].second.end()));
    }
    EXPECT_FALSE(keyCategoryFromTitle("media").has_value());
    EXPECT_FALSE(keyCategoryFromTitle("letters").has_value());
    EXPECT_FALSE(keyCategoryFromTitle("").has_value());
}
