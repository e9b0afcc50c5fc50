// Linux key events become the Quartz events a Mac delivers for the same keys, and the key table
// between Linux codes and the catalogue keeps its laws.
#include "platform/linux/EvdevKeyTable.h"
#include "platform/linux/KeyboardTranslator.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>

#include <cstdio>
#include <set>

using namespace orvane;

static std::string describe(const KeyboardTranslator::Result& result) {
    if (result.outcome != KeyboardTranslator::Outcome::event)
        return result.outcome == KeyboardTranslator::Outcome::ignore ? "ignore" : "pass";
    const PlatformEvent& event = result.event;
    const auto flags = static_cast<unsigned long long>(event.flags);
    char text[80];
    if (event.systemDefined)
        std::snprintf(text, sizeof text, "14 sub=%d data1=%#llx flags=%#llx", event.systemDefined->subtype,
                      static_cast<unsigned long long>(event.systemDefined->data1), flags);
    else
        std::snprintf(text, sizeof text, "%u key=%u flags=%#llx", event.type, event.keyCode, flags);
    return text;
}

TEST(KeyboardTranslator, keysModifiersCapsLockAndMediaKeysInSequence) {
    KeyboardTranslator translator;
    const std::tuple<int, int, const char*> sequence[] = {
        // Autorepeat is another key down.
        {KEY_A, 1, "10 key=0 flags=0x100"}, {KEY_A, 2, "10 key=0 flags=0x100"}, {KEY_A, 0, "11 key=0 flags=0x100"},
        {KEY_LEFTSHIFT, 1, "12 key=56 flags=0x20102"}, {KEY_LEFTSHIFT, 2, "ignore"},
        {KEY_RIGHTSHIFT, 1, "12 key=60 flags=0x20106"},
        {KEY_LEFTSHIFT, 0, "12 key=56 flags=0x20104"},  // the other Shift still holds the flag
        {KEY_RIGHTMETA, 1, "12 key=54 flags=0x120114"}, {KEY_Z, 1, "10 key=6 flags=0x120114"},
        {KEY_RIGHTMETA, 0, "12 key=54 flags=0x20104"}, {KEY_RIGHTSHIFT, 0, "12 key=60 flags=0x100"},
        {KEY_CAPSLOCK, 1, "12 key=57 flags=0x10100"}, {KEY_CAPSLOCK, 0, "ignore"}, {KEY_F18, 1, "10 key=79 flags=0x10100"},
        {KEY_CAPSLOCK, 1, "12 key=57 flags=0x100"},
        {KEY_FN, 1, "12 key=63 flags=0x800100"}, {KEY_FN, 0, "12 key=63 flags=0x100"},
        {KEY_RIGHTALT, 1, "12 key=61 flags=0x80140"}, {KEY_RIGHTALT, 0, "12 key=61 flags=0x100"},
        {KEY_RIGHTCTRL, 1, "12 key=62 flags=0x42100"}, {KEY_RIGHTCTRL, 0, "12 key=62 flags=0x100"},
        {KEY_VOLUMEUP, 1, "14 sub=8 data1=0xa00 flags=0x100"}, {KEY_VOLUMEUP, 2, "14 sub=8 data1=0xa01 flags=0x100"},
        {KEY_PLAYPAUSE, 0, "14 sub=8 data1=0x100b00 flags=0x100"},
        {KEY_SCALE, 1, "14 sub=8 data1=0x40a00 flags=0x100"},  // Mission Control
        {KEY_SYSRQ, 1, "pass"},
    };
    for (const auto& [code, value, expected] : sequence)
        EXPECT_EQ(describe(translator.translate(static_cast<std::uint16_t>(code), value)), expected) << code << " " << value;
}

TEST(EvdevKeyTable, everyCatalogueKeyHasItsOwnCodeThatMeansItAgain) {
    std::set<std::uint16_t> codes;
    for (const KeyCode key : allKeyCodes()) {
        const auto code = evdevkeys::codeFor(key);
        if (key == KeyCode::doNotDisturb) { EXPECT_FALSE(code); continue; }  // Linux has no such key
        ASSERT_TRUE(code) << caseName(key);
        EXPECT_TRUE(codes.insert(*code).second && !evdevkeys::isButtonCode(*code)) << caseName(key);
        // The two keys that are also system keys arrive as the system keys.
        if (key != KeyCode::launchpad && key != KeyCode::missionControl) {
            EXPECT_EQ(evdevkeys::meaningOf(*code), evdevkeys::Meaning(key)) << caseName(key);
        }
    }
    for (const SystemKeyID key : allSystemKeys()) {
        const auto code = evdevkeys::codeFor(key);
        ASSERT_TRUE(code) << caseName(key);
        EXPECT_EQ(evdevkeys::meaningOf(*code), evdevkeys::Meaning(key)) << caseName(key);
    }
}
