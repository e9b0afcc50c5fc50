// The key catalogue checked by its laws: round trips, unique codes, names and usages, categories.
#include "model/KeyCategory.h"
#include "model/KeyCode.h"
#include "model/SystemKeyID.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>

using namespace orvane;

TEST(KeyCatalogue, everyKeyRoundTripsAndItsNamesAndUsageAreItsOwn) {
    ASSERT_EQ(allKeyCodes().size(), keyCodeCount);
    std::set<std::string_view> caseNames, displayNames;
    std::set<std::uint64_t> usages;
    std::size_t withoutUsage = 0;
    for (std::size_t i = 0; i < allKeyCodes().size(); ++i) {
        const KeyCode key = allKeyCodes()[i];
        SCOPED_TRACE(std::string(caseName(key)));
        EXPECT_EQ(keyCodeFromRaw(rawValue(key)), key);
        EXPECT_EQ(declaredIndex(key), i);
        EXPECT_EQ(keyCodeFromCaseName(caseName(key)), key);
        EXPECT_TRUE(caseNames.insert(caseName(key)).second && displayNames.insert(displayName(key)).second);
        EXPECT_FALSE(symbol(key).empty());
        EXPECT_EQ(isModifierKey(key), categoryOf(key) == KeyCategory::modifiers);
        const auto usage = hidUsage(key);
        withoutUsage += !usage;
        if (!usage) continue;
        // A usage of the Keyboard/Keypad page: 0x04 to 0xA4, or the modifiers 0xE0 to 0xE7.
        const std::uint64_t id = *usage - 0x700000000ULL;
        EXPECT_TRUE((id >= 0x04 && id <= 0xA4) || (id >= 0xE0 && id <= 0xE7)) << std::hex << *usage;
        EXPECT_TRUE(usages.insert(*usage).second);
    }
    EXPECT_EQ(withoutUsage, 6u);  // the five media keys and Fn
    EXPECT_FALSE(keyCodeFromCaseName("deleteKey"));  // files say "delete"
}

TEST(KeyCatalogue, onlyTheCodesOfKeysNameAKey) {
    const std::set<int> unnamedBelow127{10, 52, 66, 68, 70, 72, 73, 74, 77, 93, 94, 95, 102, 104, 108, 110, 112, 114};
    for (int code = -3; code <= 400; ++code) {
        const bool named = (code >= 0 && code <= 126 && !unnamedBelow127.count(code)) || code == 160 || (code >= 176 && code <= 179);
        EXPECT_EQ(keyCodeFromRaw(code).has_value(), named) << code;
    }
    EXPECT_FALSE(keyCodeFromRaw(-1LL << 40) || keyCodeFromRaw(1LL << 40));
}

TEST(KeyCatalogue, categoriesHoldEveryKeyOnceUnderTheirTitles) {
    const std::pair<const char*, std::size_t> expected[] = {{"Letters", 26}, {"Numbers", 10},   {"F-Keys", 20},
                                                            {"Modifiers", 10}, {"Special", 17}, {"Navigation", 8},
                                                            {"Numpad", 18},   {"Media & System", 5}};
    ASSERT_EQ(allKeyCategories().size(), std::size(expected));
    std::set<KeyCode> seen;
    for (std::size_t c = 0; c < std::size(expected); ++c) {
        const KeyCategory category = allKeyCategories()[c];
        EXPECT_EQ(title(category), expected[c].first);
        EXPECT_EQ(keyCategoryFromTitle(expected[c].first), category);
        EXPECT_EQ(keys(category).size(), expected[c].second) << expected[c].first;
        for (const KeyCode key : keys(category)) {
            EXPECT_EQ(categoryOf(key), category) << caseName(key);
            EXPECT_TRUE(seen.insert(key).second) << caseName(key);
        }
    }
    EXPECT_EQ(seen.size(), keyCodeCount);
    EXPECT_TRUE(std::ranges::is_sorted(keys(KeyCategory::letters), {}, [](KeyCode key) { return displayName(key); }));
    for (const char* notATitle : {"media", "letters", ""}) EXPECT_FALSE(keyCategoryFromTitle(notATitle)) << notATitle;
}

// Each raw value names its own key and no other value names one.
TEST(SystemKeys, rawValuesRoundTripAndNoOtherTypeNamesAKey) {
    ASSERT_EQ(allSystemKeys().size(), systemKeyCount);
    std::set<std::string_view> names;
    for (const SystemKeyID key : allSystemKeys()) {
        EXPECT_EQ(systemKeyFromRaw(rawValue(key)), key);
        EXPECT_TRUE(names.insert(displayName(key)).second && !symbol(key).empty()) << caseName(key);
    }
    std::size_t named = 0;
    for (int raw = -2; raw < 300; ++raw) named += systemKeyFromRaw(raw).has_value();
    EXPECT_EQ(named, systemKeyCount);
}
