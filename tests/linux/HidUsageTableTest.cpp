// The Keyboard/Keypad usage table by its laws (each code leads back to its usage, but for the
// kernel's three aliases; every catalogue key has a code) and a few rows. The kernel test checks
// every usage against a real kernel's keymap.
#include "model/KeyCode.h"
#include "platform/linux/HidUsageTable.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>

#include <set>

using namespace orvane;

TEST(HidUsageTable, eachCodeLeadsBackToItsUsageButForTheKernelsAliasesAndCatalogueKeysAllHaveOne) {
    std::set<std::uint32_t> aliases;
    for (std::uint32_t usage = 0; usage <= 0x1FF; ++usage) {
        const auto code = evdevCodeForUsage(usage);
        if (!code) continue;
        EXPECT_TRUE(usage >= 0x04 && usage <= 0xE7) << std::hex << usage;
        const auto back = usageForEvdevCode(*code);
        ASSERT_TRUE(back) << std::hex << usage;
        if (*back != usage) aliases.insert(usage);
        EXPECT_EQ(evdevCodeForUsage(*back), code);
    }
    EXPECT_EQ(aliases, (std::set<std::uint32_t>{0x32, 0x9C, 0xD8}));
    for (const KeyCode key : allKeyCodes()) {
        if (const auto usage = hidUsage(key)) {
            EXPECT_TRUE(evdevCodeForUsage(*usage - 0x700000000)) << caseName(key);
        }
    }
}

TEST(HidUsageTable, spotRows) {
    const std::pair<std::uint32_t, std::optional<std::uint16_t>> rows[] = {
        {0x04, KEY_A},   {0x29, KEY_ESC},       {0x32, KEY_BACKSLASH}, {0x39, KEY_CAPSLOCK}, {0x64, KEY_102ND},
        {0x6D, KEY_F18}, {0xE7, KEY_RIGHTMETA}, {0x03, {}},            {0x82, {}},           {0x70029, {}},
    };
    for (const auto& [usage, code] : rows) EXPECT_EQ(evdevCodeForUsage(usage), code) << std::hex << usage;
    EXPECT_EQ(usageForEvdevCode(KEY_DELETE), 0x4Cu);
    EXPECT_FALSE(usageForEvdevCode(KEY_PLAYPAUSE));  // a consumer-page key
    EXPECT_FALSE(usageForEvdevCode(0xFFFF));
}
