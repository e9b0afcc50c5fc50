// The debugger: its wording of records, its model, and its window over the simulated event system.
#include "Mappings.h"
#include "UiHarness.h"
#include "platform/tapchain/PlatformEvent.h"
#include "ui/debugger/DebugEventText.h"
#include "ui/debugger/DebugViewModel.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QSignalSpy>
#include <QTest>

#include <algorithm>

using namespace orvane;
using namespace orvane::testing;
using namespace orvane::debugtext;

namespace {

const QColor blue("#0a5cc2"), gray("#636366"), purple("#8944ab"), orange("#a65400"), green("#1d7a34");  // the theme's readable shades
const QString instruction = QStringLiteral("Click 'Start Capture' then press any key to see its raw event data.");

PlatformEvent keyEvent(std::uint32_t type, KeyCode key, std::uint64_t flags = 0) {
    return {type, static_cast<std::uint16_t>(rawValue(key)), flags, 0, std::nullopt};
}
PlatformEvent systemDefined(std::int16_t subtype, std::int64_t data1) { return {14, 0, 0, 0, SystemDefinedFields{subtype, data1}}; }
DebugEvent record(std::uint32_t type, std::uint16_t keyCode = 0, std::uint64_t flags = 0, std::optional<std::int16_t> subtype = {},
                  std::int64_t data1 = 0) {
    DebugEvent record;
    record.event = TapEvent::decode(type, keyCode, flags, 0, subtype, data1);
    return record;
}
QString decodedName(KeyCode key) { return QStringLiteral("\u2192 ") + QString::fromUtf8(displayName(key).data()); }

// What one row shows: "direction|code|decoded|interception|flags", a hidden part empty; and two colours.
struct ShownRow { QString text; QColor badge, interceptionColor; };

struct DebugViewTest : ::testing::Test {
    UiHarness ui;

    void SetUp() override { ASSERT_TRUE(ui.show(QStringLiteral("DebugView.qml"), QSize(550, 500))); }

    DebugViewModel* model() { return ui.view()->rootObject()->property("model").value<DebugViewModel*>(); }
    QString text(const char* name) { return ui.read(name, "text").toString(); }
    void type(const PlatformEvent& event) { ui.events().inject(event), ui.settle(); }
    void startCapture() {
        ui.click(ui.find("captureButton"));
        ASSERT_TRUE(model()->isCapturing());
    }

    // The rows laid out in the list, top to bottom.
    std::vector<ShownRow> rows() {
        QList<QQuickItem*> items = ui.find("eventListView")->property("contentItem").value<QQuickItem*>()->childItems();
        items.removeIf([](QQuickItem* item) { return !item->isVisible() || !childNamed(item, "directionBadge"); });
        std::sort(items.begin(), items.end(), [](QQuickItem* a, QQuickItem* b) { return a->y() < b->y(); });
        std::vector<ShownRow> shown;
        for (QQuickItem* row : items) {
            const auto part = [row](const char* name) { return childNamed(row, QString::fromLatin1(name)); };
            QStringList texts;
            for (const char* name : {"directionBadge", "codeText", "decodedText", "interceptionText", "flagsText"})
                texts << (part(name)->isVisible() ? part(name)->property("text").toString() : QString());
            shown.push_back({texts.join('|'), part("directionBadge")->property("fill").value<QColor>(),
                             part("interceptionText")->property("color").value<QColor>()});
        }
        return shown;
    }
};

}  // namespace

// Key downs and ups, a modifier's press and release, a media key's and an unknown subtype: the view's rows;
// which flags make a modifier down, for every key: the event decoding's tests.
TEST(DebugEventText, directionLabelAndToneForEveryTypeAndState) {
    const std::tuple<DebugEvent, const char*, BadgeTone> cases[] = {
        {record(12, 0, 0x20000), "\u2191 flags", BadgeTone::Purple},  // not a modifier key: never down
        {record(14), "\u25C6 system", BadgeTone::Orange},
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
    EXPECT_EQ(captureTimeText(local(0, 0, 0, 1) + std::chrono::microseconds(999)), "00:00:00.001");  // not rounded
}

// Newest first is the view's rows' order (below).
TEST(DebugViewModel, aFullListKeepsTheNewestHundredAndStopsAskingToScroll) {
    UiHarness ui;
    DebugViewModel model;
    QSignalSpy scrolls(&model, &DebugViewModel::scrollToNewest);
    DebugEvent record;
    for (record.event.keyCode = 0; record.event.keyCode < 150; ++record.event.keyCode) model.addEvent(record);
    // Rows, the oldest row's key code, scroll requests.
    EXPECT_EQ(std::tuple(model.count(), model.events().back().event.keyCode, scrolls.count()), std::tuple(100, 50, 100));

    model.clear();  // nothing left to scroll to
    model.setAutoScroll(false);
    model.addEvent(record);
    EXPECT_EQ(scrolls.count(), 100);
}

TEST(DebugViewModel, eachCaptureHasOneTapAndItsRecordsArriveOnALaterTurn) {
    UiHarness ui;
    const int before = ui.events().activeTapCount();
    {
        DebugViewModel model;
        model.startCapture();
        model.startCapture();
        EXPECT_EQ(ui.events().activeTapCount(), before + 1);
        ui.events().inject({.type = 10, .keyCode = 2, .systemDefined = std::nullopt});
        EXPECT_EQ(model.count(), 0);  // never changed from inside the tap callback
        ui.settle();
        EXPECT_EQ(model.count(), 1);

        model.stopCapture();
        EXPECT_EQ(ui.events().activeTapCount(), before);
        model.toggleCapture();
    }
    EXPECT_EQ(ui.events().activeTapCount(), before);  // dropped while capturing
}

TEST_F(DebugViewTest, theStatusShowsTheInstructionUntilACaptureThenWhetherInterceptionRuns) {
    EXPECT_EQ(text("statusText"), instruction);
    EXPECT_EQ(text("captureButton"), "Start Capture");
    EXPECT_FALSE(ui.find("statusIcon")->isVisible() || ui.find("clearButton")->isEnabled());  // and no rows: see after a clear
    ui.screenshot(QStringLiteral("debugger-empty"));

    simAccessibility().setTrusted(false);  // nothing could be captured: the notice says why instead
    ui.click(ui.find("captureButton"));
    EXPECT_TRUE(text("captureButton") == "Start Capture" && ui.shown("permissionNotice"));
    simAccessibility().setTrusted(true);
    startCapture();
    EXPECT_FALSE(ui.shown("permissionNotice"));
    EXPECT_EQ(text("captureButton"), "Stop Capture");
    for (const bool running : {true, false}) {
        running ? (void)ui.manager().start() : ui.manager().stop(), ui.settle();
        EXPECT_EQ(text("statusText"), running ? QString::fromUtf8("Mappings active \u2013 events shown are post-remap")
                                              : QString::fromUtf8("Mappings inactive \u2013 events shown are raw hardware"));
        EXPECT_EQ(ui.find("statusIcon")->property("name").toString(), running ? "bolt.circle.fill" : "circle");
        EXPECT_EQ(ui.find("statusText")->property("color").value<QColor>() == green, running);
    }
}

TEST_F(DebugViewTest, rowsShowNewestFirstClearEmptiesThemAndTheNoiseBoxSwitchesTheFilter) {
    startCapture();
    for (const PlatformEvent& event : {keyEvent(10, KeyCode::a, 0x100), keyEvent(11, KeyCode::a, 0x100),
                                       keyEvent(12, KeyCode::leftShift, 0x20102), keyEvent(12, KeyCode::leftShift, 0x100),
                                       systemDefined(8, 0x00010A00), systemDefined(8, 0x00010B00),  // volume down
                                       systemDefined(8, 0x00190A00)})  // a media key that is no catalogue key
        type(event);

    const QString shift = decodedName(KeyCode::leftShift), a = decodedName(KeyCode::a);
    const std::pair<QString, QColor> expected[] = {
        {"\u2193 system|25|||", orange},
        {"\u2191 system|1|\u2192 Volume Down||", orange}, {"\u2193 system|1|\u2192 Volume Down||", orange},
        {"\u2191 flags|56|" + shift + "||", purple},       {"\u2193 flags|56|" + shift + "||\u21E7", purple},
        {"\u2191 keyUp|0|" + a + "||", gray},              {"\u2193 keyDown|0|" + a + "||", blue},
    };
    std::string shown, wanted;  // a row a line, its badge's colour after its text
    for (const ShownRow& row : rows()) shown += (row.text + ' ' + row.badge.name() + '\n').toStdString();
    for (const auto& [text, badge] : expected) wanted += (text + ' ' + badge.name() + '\n').toStdString();
    EXPECT_EQ(shown, wanted);
    EXPECT_EQ(text("countText"), "7 events");
    ui.click(ui.find("clearButton"));
    EXPECT_TRUE(rows().empty() && !ui.find("clearButton")->isEnabled());
    EXPECT_EQ(text("countText"), "0 events");

    // Which events are noise is the capture's rule; here only that the box switches the filter off
    // and that the capture goes on after a clear.
    type(systemDefined(211, 0));
    EXPECT_TRUE(rows().empty());
    ui.click(ui.find("filterNoiseBox"));
    type(systemDefined(211, 0));
    ASSERT_EQ(rows().size(), 1u);
    EXPECT_EQ(rows().front().text, QString::fromUtf8("\u25C6 sys:211||||"));  // no key type outside subtype 8
}

TEST_F(DebugViewTest, closingStopsTheCaptureButKeepsTheRows) {
    startCapture();
    type(keyEvent(10, KeyCode::b));
    ui.view()->close(), ui.settle();
    EXPECT_FALSE(model()->isCapturing());
    type(keyEvent(10, KeyCode::n));
    ui.view()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(ui.view()));
    ui.settle();
    EXPECT_EQ(text("captureButton"), "Start Capture");
    EXPECT_EQ(text("statusText"), instruction);
    ASSERT_EQ(rows().size(), 1u);
    EXPECT_TRUE(rows().front().text.contains(decodedName(KeyCode::b)));
}

TEST_F(DebugViewTest, autoScrollBringsTheNewestRowToTheTop) {
    startCapture();
    for (int i = 0; i < 40; ++i) ui.events().inject(keyEvent(10, KeyCode::a));
    ui.settle();
    QQuickItem* list = ui.find("eventListView");
    const auto top = [list] { return list->property("originY").toReal(); };
    list->setProperty("contentY", top() + 200);
    type(keyEvent(10, KeyCode::b));
    // The list eases there; wait for it to arrive, however slowly the machine runs.
    EXPECT_TRUE(QTest::qWaitFor([&] { return list->property("contentY").toReal() == top(); }, 30000));
    EXPECT_TRUE(rows().front().text.contains(decodedName(KeyCode::b)));
}

TEST_F(DebugViewTest, tabReachesEveryControlWithoutTogglingTheCapture) {
    startCapture();
    type(keyEvent(10, KeyCode::a));  // so that "Clear" is enabled
    ui.find("captureButton")->forceActiveFocus(Qt::TabFocusReason);
    for (const char* name : {"eventList", "clearButton", "autoScrollBox", "filterNoiseBox", "captureButton"}) {
        ui.key(Qt::Key_Tab);
        QQuickItem* focused = ui.view()->activeFocusItem();
        EXPECT_TRUE(focused == ui.find(name) || ui.find(name)->isAncestorOf(focused)) << name;
    }
    EXPECT_TRUE(model()->isCapturing());
}

TEST_F(DebugViewTest, mappedKeysTellWhatTheirMappingDoesInOrangeWhileInterceptionRuns) {
    ui.store().setMappings({mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::space, {true, true, true, true})),
                            mapping(KeyCode::q, TargetAction::block())}), ui.settle();
    startCapture();
    type(keyEvent(10, KeyCode::q, 0x100));
    EXPECT_NE(rows().front().interceptionColor, orange);
    // Restarted after the main tap, the capture stands in front of it and still sees the blocked key.
    ASSERT_TRUE(ui.manager().start());
    model()->stopCapture();
    startCapture();
    // A varied list for the README's picture.
    for (const PlatformEvent& event :
         {keyEvent(10, KeyCode::h, 0x100), keyEvent(11, KeyCode::h, 0x100), keyEvent(12, KeyCode::leftCommand, 0x100108),
          keyEvent(10, KeyCode::s, 0x100108), keyEvent(12, KeyCode::leftCommand, 0x100), systemDefined(8, 0x00070A00),
          systemDefined(8, 0x00070B00), keyEvent(10, KeyCode::q, 0x100), keyEvent(12, KeyCode::capsLock, 0x10100)})
        type(event);
    EXPECT_EQ(rows()[1].text, QString::fromUtf8("\u2193 keyDown|12|\u2192 Q|\u26A1 Tap \u2192 Block|"));
    EXPECT_EQ(rows()[1].interceptionColor, orange);
    ui.screenshot(QStringLiteral("debugger-capturing"));
}
