// The HID tool component against a fake tool: exact arguments, texts and the success rule.
#include "FakeHidutil.h"
#include "platform/Diagnostics.h"
#include "store/HIDUtil.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>

using namespace orvane;

namespace {

struct HIDUtilTest : ::testing::Test {
    orvane::testing::FakeHidutil tool;
    std::vector<std::string> lines;
    void SetUp() override { diagnostics::redirectTo(&lines); }
    void TearDown() override { diagnostics::redirectTo(nullptr); }
};

QStringList remapArguments(const char* destination) {
    return {"property", "--set",
            QStringLiteral(R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":30064771129,"HIDKeyboardModifierMappingDst":%1}]})")
                .arg(destination)};
}

}  // namespace

TEST_F(HIDUtilTest, remapsCapsLockWithTheExactArguments) {
    const struct {
        KeyCode target;
        const char* destination;
        std::vector<std::string> lines;
    } cases[] = {
        {KeyCode::escape, "30064771113", {"HIDUtil: Remapped Caps Lock → Escape at HID layer"}},
        {KeyCode::capsLock, "30064771129", {"HIDUtil: Remapped Caps Lock → Caps Lock at HID layer"}},
        {KeyCode::keypadEquals, "30064771175", {"HIDUtil: Remapped Caps Lock → Keypad = at HID layer"}},
        {KeyCode::globe, "30064771181",
         {"HIDUtil: No HID usage ID for Globe, falling back to F18", "HIDUtil: Remapped Caps Lock → F18 at HID layer"}},
    };
    const HIDUtil hid(tool.path());
    for (const auto& c : cases) {
        lines.clear();
        EXPECT_TRUE(hid.remapCapsLock(c.target));
        EXPECT_EQ(tool.calls().back(), remapArguments(c.destination));
        EXPECT_EQ(lines, c.lines);
    }
    EXPECT_EQ(tool.calls().size(), std::size(cases));
}

TEST_F(HIDUtilTest, clearSetsTheEmptyList) {
    EXPECT_TRUE(HIDUtil(tool.path()).clearRemapping());
    ASSERT_EQ(tool.calls().size(), 1u);
    EXPECT_EQ(tool.calls()[0], (QStringList{"property", "--set", R"({"UserKeyMapping":[]})"}));
    EXPECT_EQ(lines, std::vector<std::string>{"HIDUtil: Cleared HID remapping, Caps Lock restored"});
}

TEST_F(HIDUtilTest, successMeansNoErrorInAnyLetterCaseOnEitherStream) {
    const QByteArray longHarmless = QByteArray("UserKeyMapping set. ").repeated(500);
    const struct {
        QByteArray out, err;
        bool succeeds;
    } cases[] = {
        {"", "", true},
        {longHarmless, "", true},
        {"Error: permission denied\n", "", false},
        {"ERROR", "", false},
        {"", "some eRRor happened", false},
        {"terror", "", false},  // the rule is a plain substring match
        {"\xff\xfe error \x80", "", true},  // not UTF-8: counts as empty output
    };
    const HIDUtil hid(tool.path());
    for (const auto& c : cases) {
        SCOPED_TRACE(c.out.left(40).toStdString() + "|" + c.err.toStdString());
        tool.setOutput(c.out);
        tool.setErrorOutput(c.err);
        lines.clear();
        EXPECT_EQ(hid.remapCapsLock(KeyCode::escape), c.succeeds);
        EXPECT_EQ(hid.clearRemapping(), c.succeeds);
        ASSERT_EQ(lines.size(), 2u);
        if (!c.succeeds) {
            const std::string output = (c.out + c.err).toStdString();
            EXPECT_EQ(lines[0], "HIDUtil: Failed to remap Caps Lock: " + output);
            EXPECT_EQ(lines[1], "HIDUtil: Failed to clear remapping: " + output);
        }
    }
}

TEST_F(HIDUtilTest, aMissingToolFailsWithBothLines) {
    const HIDUtil hid(tool.missingPath());
    EXPECT_FALSE(hid.remapCapsLock(KeyCode::escape));
    ASSERT_EQ(lines.size(), 2u);
    const std::string runPrefix = "HIDUtil: Failed to run hidutil: ";
    ASSERT_EQ(lines[0].rfind(runPrefix, 0), 0u) << lines[0];
    const std::string description = lines[0].substr(runPrefix.size());
    EXPECT_FALSE(description.empty());
    EXPECT_EQ(lines[1], "HIDUtil: Failed to remap Caps Lock: error: " + description);
    EXPECT_EQ(hid.runHidutil({"x"}).toStdString(), "error: " + description);
}

TEST_F(HIDUtilTest, aHungToolIsKilledAfterTheTimeout) {
    tool.setHangs(true);
    const HIDUtil hid(tool.path(), 1);
    QElapsedTimer timer;
    timer.start();
    EXPECT_FALSE(hid.clearRemapping());
    EXPECT_LT(timer.elapsed(), 30000);  // generous: only proves the sleep was cut short
    EXPECT_EQ(lines, std::vector<std::string>{"HIDUtil: Failed to clear remapping: error: timed out after 1 seconds"});
}
