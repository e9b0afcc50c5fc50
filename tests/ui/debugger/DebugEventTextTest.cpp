// The debugger's wording of records: direction labels and badge tones, flag glyphs, NX codes, times.
#include "model/KeyCode.h"
#include "ui/debugger/DebugEventText.h"

#include <gtest/gtest.h>

#include <QDateTime>

using namespace orvane;
using namespace orvane::debugtext;

namespace {

DebugEvent record(int type, std::optional<int> keycode = {}, std::optional<std::uint64_t> flags = {},
                  std::optional<int> subtype = {}, std::optional<std::int64_t> data1 = {}) {
    DebugEvent event;
    event.eventType = type;
    event.keycode = keycode;
    event.flags = flags;
    event.subtype = subtype;
    event.data1 = data1;
    return event;
}

}  // namespace

TEST(DebugEventText, directionLabelAndToneForEveryTypeAndState) {
    const std::tuple<DebugEvent, const char*, BadgeTone> cases[] = {
        {record(10, 0, 0), "\u2193 keyDown", BadgeTone::Blue},
        {record(11, 0, 0), "\u2191 keyUp", BadgeTone::Gray},
        {record(12, std::nullopt, 0x20000), "\u21C5 flags", BadgeTone::Purple},
        {record(12, 56, std::nullopt), "\u21C5 flags", BadgeTone::Purple},
        {record(12, 56, 0x20102), "\u2193 flags", BadgeTone::Purple},
        {record(12, 56, 0x100), "\u2191 flags", BadgeTone::Purple},
        {record(12, 0, 0x20000), "\u2191 flags", BadgeTone::Purple},  // not a modifier key: never down
        {record(14), "\u25C6 system", BadgeTone::Orange},
        {record(14, {}, {}, 8, 0x00000A00), "\u2193 system", BadgeTone::Orange},
        {record(14, {}, {}, 8, 0x00000B00), "\u2191 system", BadgeTone::Orange},
        {record(14, {}, {}, 8), "\u25C6 sys:8", BadgeTone::Orange},
        {record(14, {}, {}, 211, 0), "\u25C6 sys:211", BadgeTone::Orange},
        {record(13), "? unknown", BadgeTone::Secondary},
    };
    for (const auto& [event, label, tone] : cases) {
        EXPECT_EQ(directionLabel(event), QString::fromUtf8(label)) << label;
        EXPECT_EQ(badgeTone(event.eventType), tone) << label;
    }
}

TEST(DebugEventText, aModifierKeyIsDownExactlyWhileItsCatalogueFlagIsSet) {
    const std::uint64_t everyModifier = 0x9F0000;
    for (const KeyCode key : allKeyCodes()) {
        const std::uint64_t flag = modifierFlagMask(key).value_or(0);
        EXPECT_EQ(modifierIsDown(rawValue(key), everyModifier), flag != 0) << caseName(key);
        EXPECT_FALSE(modifierIsDown(rawValue(key), everyModifier & ~flag)) << caseName(key);
    }
}

TEST(DebugEventText, flagsShowGlyphsInOrderElseTheUnexplainedBits) {
    const std::pair<std::uint64_t, const char*> cases[] = {
        {0x100000, "\u2318"}, {0x80000, "\u2325"}, {0x40000, "\u2303"}, {0x20000, "\u21E7"}, {0x10000, "\u21EA"},
        {0x800000, "fn"},
        {0x9F0000, "\u2318\u2325\u2303\u21E7\u21EAfn"},
        {0x20102, "\u21E7"},  // with a glyph, other bits are not shown
        {0, ""}, {0x100, ""}, {0x102, "0x2"}, {0xA0000000, "0xA0000000"},
    };
    for (const auto& [flags, text] : cases) EXPECT_EQ(flagsText(flags), QString::fromUtf8(text)) << std::hex << flags;
    // A row shows flags only when present and not 0.
    EXPECT_EQ(shownFlagsText(record(10, 0, std::nullopt)), QString());
    EXPECT_EQ(shownFlagsText(record(10, 0, 0)), QString());
}

TEST(DebugEventText, mediaKeyEventsCarryBitsSixteenToTwentyThreeAsNxCode) {
    EXPECT_EQ(nxKeyCode(record(14, {}, {}, 8, 0x12830A00)), 0x83);
    EXPECT_EQ(nxKeyCode(record(14, {}, {}, 8, -1)), 0xFF);
    EXPECT_EQ(nxKeyCode(record(14, {}, {}, 8)), std::nullopt);
    EXPECT_EQ(nxKeyCode(record(14, {}, {}, 7, 0x00070A00)), std::nullopt);
}

TEST(DebugEventText, timeIsLocalTwentyFourHourWithMilliseconds) {
    const auto local = [](int h, int m, int s, int ms) {
        const QDateTime time(QDate(2024, 3, 5), QTime(h, m, s, ms), Qt::LocalTime);
        return std::chrono::system_clock::time_point(std::chrono::milliseconds(time.toMSecsSinceEpoch()));
    };
    EXPECT_EQ(captureTimeText(local(9, 7, 3, 45)), "09:07:03.045");
    EXPECT_EQ(captureTimeText(local(23, 59, 59, 999)), "23:59:59.999");
    EXPECT_EQ(captureTimeText(local(0, 0, 0, 1) + std::chrono::microseconds(999)), "00:00:00.001");  // not rounded
}
