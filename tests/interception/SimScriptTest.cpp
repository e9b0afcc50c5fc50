// The simulator's script and command line: what is accepted, and which line is reported when not.
#include "Options.h"
#include "Script.h"

#include <gtest/gtest.h>

using namespace orvane::sim;

TEST(SimScript, readsEveryKindOfLine) {
    const auto parsed = parseScript(
        "# comment\n\n  keyDown delete flags=0xA userData=-3\nkeyUp 65535\nflagsChanged rightCommand flags=0x100000\r\n"
        "systemDefined subtype=8 data1=0xFFFFFFFFFFFFFFFF\nsystemDefined\nsystemDefined subtype=-2\nevent 4294967295\n"
        "tapDisabledByTimeout\ntapDisabledByUserInput\nstop\nstart\nrecord\nrecord modifiers\ncancel\nwait 4294967295");
    ASSERT_TRUE(std::holds_alternative<std::vector<ScriptItem>>(parsed));
    const auto& items = std::get<std::vector<ScriptItem>>(parsed);
    ASSERT_EQ(items.size(), 15u);
    // Line numbers skip comments and blank lines; the edges of each number's range are accepted.
    EXPECT_EQ(items[0].lineNumber, 3);
    EXPECT_EQ(items[0].event.userData, -3);
    EXPECT_EQ(items[1].event.keyCode, 65535);
    EXPECT_EQ(items[3].event.systemDefined.value().data1, -1);
    EXPECT_FALSE(items[4].event.systemDefined);
    EXPECT_EQ(items[5].event.systemDefined.value().data1, 0);
    EXPECT_EQ(items[6].event.type, 4294967295u);
    EXPECT_EQ(items[13].lineNumber, 16);
    EXPECT_EQ(items[14].milliseconds, 4294967295);
}

TEST(SimScript, reportsTheFirstMalformedLine) {
    const char* malformed[] = {
        "keyDown 65536", "keyDown capslock", "keyDown", "keyDown a flags=12", "keyDown a flags=0x",
        "keyDown a flags=0x1FFFFFFFFFFFFFFFF", "keyDown a extra", "keyDown a flags=0x1 flags=0x2", "flagsChanged a",
        "keyUp a userData=x", "systemDefined data1=12", "systemDefined subtype=40000", "event 10", "event 11", "event 12",
        "event 14", "event", "event -1", "stop now", "record keys", "pressKey a", "wait", "wait -1", "wait 1.5", "wait 4294967296",
    };
    for (const char* line : malformed) {
        const auto parsed = parseScript(std::string("keyDown a\n\n") + line + "\nkeyDown b\n");
        ASSERT_TRUE(std::holds_alternative<ScriptError>(parsed)) << line;
        EXPECT_EQ(std::get<ScriptError>(parsed).lineNumber, 3) << line;
    }
}

TEST(SimScript, errorsQuoteAShortPrefixOfTheInputWithControlCharactersEscaped) {
    const auto parsed = parseScript("keyDown " + std::string(50'000, 'x') + "\n\x1b[2J\n");
    const std::string& reason = std::get<ScriptError>(parsed).reason;
    EXPECT_LT(reason.size(), 64u) << reason;
    EXPECT_EQ(std::get<ScriptError>(parseScript("\x1b[2J")).reason, "unknown command \"\\x1B[2J\"");
}

// The other options as the scenario files use them.
TEST(SimOptions, acceptsTheDocumentedOptionsOnly) {
    const auto parsed = parseOptions({"--caps-hid", "f18", "--hidutil=/x", "script.txt"});
    ASSERT_TRUE(std::holds_alternative<Options>(parsed));
    EXPECT_EQ(std::get<Options>(parsed).capsHid, Options::CapsHid::f18);
    EXPECT_EQ(std::get<Options>(parsed).hidutil, "/x");
    for (const std::vector<std::string>& bad : std::vector<std::vector<std::string>>{
             {"--verbose"}, {"--caps-hid", "both"}, {"--mappings"}, {"a", "b"}, {"--capture=yes"}, {"-x"}})
        EXPECT_TRUE(std::holds_alternative<std::string>(parseOptions(bad))) << bad[0];
}
