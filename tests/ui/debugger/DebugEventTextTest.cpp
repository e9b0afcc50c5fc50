// The debugger's wording of records: direction labels and badge tones, flag glyphs, times.
#include "ui/debugger/DebugEventText.h"

#include <gtest/gtest.h>

#include <QDateTime>

using namespace orvane;
using namespace orvane::debugtext;

namespace {

DebugEvent record(std::uint32_t type, std::uint16_t keyCode = 0, std::uint64_t flags = 0, std::optional<std::int16_t> subtype = {},
                  std::int64_t data1 = 0) {
    DebugEvent record;
    record.event = TapEvent::decode(type, keyCode, flags, 0, subtype, data1);
    return record;
}

}  // namespace

// Key downs and ups, a modifier's press and release, a media key's and an unknown subtype: the view's rows.
TEST(DebugEventText, directionLabelAndToneForEveryTypeAndState) {
    const std::tuple<DebugEvent, const char*, BadgeTone> cases[] = {
        {record(12, 60, 0x20102), "\u2193 flags", BadgeTone::Purple},  // right Shift shares the flag
        {record(12, 57, 0x10000), "\u2193 flags", BadgeTone::Purple},
        {record(12, 63, 0x100000), "\u2191 flags", BadgeTone::Purple},  // fn reads only its own flag
        {record(12, 0, 0x20000), "\u2191 flags", BadgeTone::Purple},    // not a modifier key: never down
        {record(14), "\u25C6 system", BadgeTone::Orange},
        {record(14, 0, 0, 8, 0x00190B00), "\u2191 system", BadgeTone::Orange},  // not a catalogue key
        {record(13), "? unknown", BadgeTone::Secondary},
    };
    for (const auto& [event, label, tone] : cases) {
        EXPECT_EQ(directionLabel(event), QString::fromUtf8(label)) << label;
        EXPECT_EQ(badgeTone(event.event.type), tone) << label;
    }
}

TEST(DebugEventText, flagsShowGlyphsInOrderElseTheUnexplainedBits) {
    const std::pair<std::uint64_t, const char*> cases[] = {
        {0x100000, "\u2318"}, {0x80000, "\u2325"}, {0x40000, "\u2303"}, {0x20000, "\u21E7"}, {0x10000, "\u21EA"},
        {0x800000, "fn"},
        {0x9F0000, "\u2318\u2325\u2303\u21E7\u21EAfn"},
        {0, ""}, {0x102, "0x2"}, {0xA0000000, "0xA0000000"},  // with a glyph, other bits are not shown: the view's rows
    };
    for (const auto& [flags, text] : cases) EXPECT_EQ(flagsText(flags), QString::fromUtf8(text)) << std::hex << flags;
    // A row shows flags only for events that carry them, and not 0.
    EXPECT_EQ(shownFlagsText(record(14, 0, 0x20000, 8, 0)), QString());
    EXPECT_EQ(shownFlagsText(record(10, 0, 0x20000)), QString::fromUtf8("\u21E7"));
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
