// The HID tool component against a fake tool: exact arguments, texts and the success rule.
#include "FakeHidutil.h"
#include "platform/Diagnostics.h"
#include "store/HIDUtil.h"

#include <gtest/gtest.h>

using namespace orvane;

namespace {

struct HIDUtilTest : ::testing::Test {
    orvane::testing::FakeHidutil tool;
    std::vector<std::string> lines;
    void SetUp() override { diagnostics::redirectTo(&lines); }
    void TearDown() override { diagnostics::redirectTo(nullptr); }
};

}  // namespace

TEST_F(HIDUtilTest, remapsAndClearsWithTheExactArguments) {
    // The target, the usage it is sent as, and what is printed.
    const std::tuple<KeyCode, const char*, std::vector<std::string>> cases[] = {
        {KeyCode::escape, "30064771113", {"HIDUtil: Remapped Caps Lock → Escape at HID layer"}},
        {KeyCode::globe, "30064771181",
         {"HIDUtil: No HID usage ID for Globe, falling back to F18", "HIDUtil: Remapped Caps Lock → F18 at HID layer"}},
    };
    const HIDUtil hid(tool.path());
    for (const auto& [target, destination, printed] : cases) {
        lines.clear();
        EXPECT_TRUE(hid.remapCapsLock(target));
        const QString mapping = QStringLiteral(
            R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":30064771129,"HIDKeyboardModifierMappingDst":%1}]})");
        EXPECT_EQ(tool.calls().back(), (QStringList{"property", "--set", mapping.arg(destination)}));
        EXPECT_EQ(lines, printed);
    }
    EXPECT_TRUE(hid.clearRemapping());
    EXPECT_EQ(tool.calls().back(), (QStringList{"property", "--set", R"({"UserKeyMapping":[]})"}));
    EXPECT_EQ(tool.calls().size(), std::size(cases) + 1);
}

TEST_F(HIDUtilTest, successMeansNoErrorInAnyLetterCaseOnEitherStream) {
    // Standard output, standard error, and whether the run counts as a success.
    const std::tuple<QByteArray, QByteArray, bool> cases[] = {
        {"", "", true},
        {QByteArray("UserKeyMapping set. ").repeated(500), "", true},
        {"Error: permission denied\n", "", false},
        {"", "some eRRor happened", false},
        {"terror", "", false},  // the rule is a plain substring match
        {"\xff\xfe error \x80", "", true},  // not UTF-8: counts as empty output
    };
    const HIDUtil hid(tool.path());
    for (const auto& [out, err, succeeds] : cases) {
        SCOPED_TRACE(out.left(40).toStdString() + "|" + err.toStdString());
        tool.setOutput(out);
        tool.setErrorOutput(err);
        lines.clear();
        EXPECT_EQ(hid.remapCapsLock(KeyCode::escape), succeeds);
        EXPECT_EQ(hid.clearRemapping(), succeeds);
        ASSERT_EQ(lines.size(), 2u);
        if (succeeds) continue;
        EXPECT_EQ(lines[0], "HIDUtil: Failed to remap Caps Lock: " + (out + err).toStdString());
        EXPECT_EQ(lines[1], "HIDUtil: Failed to clear remapping: " + (out + err).toStdString());
    }
}

TEST_F(HIDUtilTest, aMissingToolFailsWithBothLinesAndAHungOneIsKilledAfterTheTimeout) {
    EXPECT_FALSE(HIDUtil(tool.missingPath()).remapCapsLock(KeyCode::escape));
    ASSERT_EQ(lines.size(), 2u);
    const std::string runPrefix = "HIDUtil: Failed to run hidutil: ";
    ASSERT_EQ(lines[0].rfind(runPrefix, 0), 0u) << lines[0];
    const std::string description = lines[0].substr(runPrefix.size());
    EXPECT_FALSE(description.empty());
    EXPECT_EQ(lines[1], "HIDUtil: Failed to remap Caps Lock: error: " + description);
    EXPECT_EQ(HIDUtil(tool.missingPath()).runHidutil({"x"}).toStdString(), "error: " + description);

    lines.clear();
    tool.setHangs();
    EXPECT_FALSE(HIDUtil(tool.path(), 1).clearRemapping());
    EXPECT_EQ(lines, std::vector<std::string>{"HIDUtil: Failed to clear remapping: error: timed out after 1 seconds"});
}
