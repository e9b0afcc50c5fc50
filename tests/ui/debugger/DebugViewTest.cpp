// The debugger window's content over the simulated event system: status, rows, toolbar, closing, screenshots.
#include "UiHarness.h"
#include "platform/sim/PlatformEvent.h"
#include "ui/debugger/DebugViewModel.h"

#include <gtest/gtest.h>

#include <QTest>

#include <algorithm>

using namespace orvane;
using namespace orvane::testing;

namespace {

const QColor blue("#007aff"), gray("#8e8e93"), purple("#af52de"), orange("#ff9500"), green("#34c759");
const QString instruction = QStringLiteral("Click 'Start Capture' then press any key to see its raw event data.");

PlatformEvent keyEvent(std::uint32_t type, KeyCode key, std::uint64_t flags = 0) {
    PlatformEvent event{type, static_cast<std::uint16_t>(rawValue(key)), flags, 0, std::nullopt};
    return event;
}
PlatformEvent systemDefined(std::int16_t subtype, std::int64_t data1) { return {14, 0, 0, 0, SystemDefinedFields{subtype, data1}}; }
QString decodedName(KeyCode key) { return QStringLiteral("\u2192 ") + QString::fromUtf8(displayName(key).data()); }

QQuickItem* childNamed(QQuickItem* item, const QString& name) {
    if (item->objectName() == name) return item;
    for (QQuickItem* child : item->childItems())
        if (QQuickItem* found = childNamed(child, name)) return found;
    return nullptr;
}

// What one row shows; a part left out is an empty text.
struct ShownRow {
    QString direction, code, decoded, interception, flags;
    QColor badge, interceptionColor;
};

class DebugViewTest : public ::testing::Test {
protected:
    UiHarness ui;

    void SetUp() override { ASSERT_TRUE(ui.show(QStringLiteral("DebugView.qml"), QSize(550, 500))); }

    DebugViewModel* model() { return ui.view()->rootObject()->property("model").value<DebugViewModel*>(); }
    QQuickItem* item(const char* name) { return ui.find(QString::fromLatin1(name)); }
    QString text(const char* name) { return item(name)->property("text").toString(); }
    void type(const PlatformEvent& event) {
        ui.events().inject(event);
        ui.settle();
    }
    void startCapture() {
        ui.click(item("captureButton"));
        ASSERT_TRUE(model()->isCapturing());
    }

    // The rows laid out in the list, top to bottom.
    std::vector<ShownRow> rows() {
        auto* content = item("eventListView")->property("contentItem").value<QQuickItem*>();
        std::vector<QQuickItem*> items;
        for (QQuickItem* child : content->childItems())
            if (child->isVisible() && childNamed(child, QStringLiteral("directionBadge"))) items.push_back(child);
        std::sort(items.begin(), items.end(), [](QQuickItem* a, QQuickItem* b) { return a->y() < b->y(); });
        std::vector<ShownRow> shown;
        for (QQuickItem* row : items) {
            const auto part = [row](const char* name) { return childNamed(row, QString::fromLatin1(name)); };
            const auto shownText = [&](const char* name) {
                return part(name)->isVisible() ? part(name)->property("text").toString() : QString();
            };
            shown.push_back({shownText("directionBadge"), shownText("codeText"), shownText("decodedText"),
                             shownText("interceptionText"), shownText("flagsText"),
                             part("directionBadge")->property("fill").value<QColor>(),
                             part("interceptionText")->property("color").value<QColor>()});
        }
        return shown;
    }
};

}  // namespace

TEST_F(DebugViewTest, beforeAnyCaptureTheInstructionShowsAndTheListIsEmpty) {
    EXPECT_EQ(text("statusText"), instruction);
    EXPECT_FALSE(item("statusIcon")->isVisible());
    EXPECT_EQ(text("captureButton"), "Start Capture");
    EXPECT_FALSE(item("clearButton")->isEnabled());
    EXPECT_EQ(text("countText"), "0 events");
    EXPECT_TRUE(rows().empty());
    ui.screenshot(QStringLiteral("debugger-empty"));
}

TEST_F(DebugViewTest, whileCapturingTheBannerFollowsWhetherInterceptionRuns) {
    startCapture();
    EXPECT_EQ(text("captureButton"), "Stop Capture");
    for (const bool running : {true, false}) {
        running ? (void)ui.manager().start() : ui.manager().stop();
        ui.settle();
        EXPECT_EQ(text("statusText"), running ? QString::fromUtf8("Mappings active \u2013 events shown are post-remap")
                                              : QString::fromUtf8("Mappings inactive \u2013 events shown are raw hardware"));
        EXPECT_EQ(item("statusIcon")->property("name").toString(), running ? "bolt.circle.fill" : "circle");
        EXPECT_EQ(item("statusText")->property("color").value<QColor>() == green, running);
    }
}

TEST_F(DebugViewTest, keysModifiersAndMediaKeysShowAsRowsNewestFirst) {
    startCapture();
    type(keyEvent(10, KeyCode::a, 0x100));
    type(keyEvent(11, KeyCode::a, 0x100));
    type(keyEvent(12, KeyCode::leftShift, 0x20102));
    type(keyEvent(12, KeyCode::leftShift, 0x100));
    type(systemDefined(8, 0x00010A00));  // volume down, pressed and released
    type(systemDefined(8, 0x00010B00));

    const ShownRow expected[] = {
        {"\u2191 system", "1", "\u2192 Volume Down", "", "", orange, {}},
        {"\u2193 system", "1", "\u2192 Volume Down", "", "", orange, {}},
        {"\u2191 flags", "56", decodedName(KeyCode::leftShift), "", "", purple, {}},
        {"\u2193 flags", "56", decodedName(KeyCode::leftShift), "", "\u21E7", purple, {}},
        {"\u2191 keyUp", "0", decodedName(KeyCode::a), "", "", gray, {}},
        {"\u2193 keyDown", "0", decodedName(KeyCode::a), "", "", blue, {}},
    };
    const std::vector<ShownRow> shown = rows();
    ASSERT_EQ(shown.size(), std::size(expected));
    for (std::size_t i = 0; i < shown.size(); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(shown[i].direction, expected[i].direction);
        EXPECT_EQ(shown[i].badge, expected[i].badge);
        EXPECT_EQ(shown[i].code, expected[i].code);
        EXPECT_EQ(shown[i].decoded, expected[i].decoded);
        EXPECT_EQ(shown[i].interception, "");
        EXPECT_EQ(shown[i].flags, expected[i].flags);
    }
    EXPECT_EQ(text("countText"), "6 events");
    EXPECT_TRUE(item("clearButton")->isEnabled());
}

TEST_F(DebugViewTest, aFullListKeepsTheNewestHundredAndClearEmptiesItWhileTheCaptureGoesOn) {
    const KeyCode keys[] = {KeyCode::a, KeyCode::s, KeyCode::d, KeyCode::f, KeyCode::h,
                            KeyCode::g, KeyCode::z, KeyCode::x, KeyCode::c, KeyCode::v};
    startCapture();
    for (int i = 0; i < 150; ++i) ui.events().inject(keyEvent(i % 2 ? 11 : 10, keys[(i / 2) % 10]));
    ui.settle();
    EXPECT_EQ(text("countText"), "100 events");
    EXPECT_EQ(rows().front().direction, QString::fromUtf8("\u2191 keyUp"));  // event 149
    EXPECT_EQ(rows().front().decoded, decodedName(keys[74 % 10]));
    EXPECT_EQ(model()->events().back().keycode, rawValue(keys[25 % 10]));  // event 50
    ui.screenshot(QStringLiteral("debugger-full"));

    ui.click(item("clearButton"));
    EXPECT_TRUE(rows().empty());
    EXPECT_EQ(text("countText"), "0 events");
    EXPECT_FALSE(item("clearButton")->isEnabled());
    type(keyEvent(10, KeyCode::b));
    EXPECT_EQ(rows().size(), 1u);
}

TEST_F(DebugViewTest, autoScrollBringsTheNewestRowToTheTop) {
    startCapture();
    for (int i = 0; i < 40; ++i) ui.events().inject(keyEvent(10, KeyCode::a));
    ui.settle();
    QQuickItem* list = item("eventListView");
    const auto top = [list] { return list->property("originY").toReal(); };
    list->setProperty("contentY", top() + 200);
    type(keyEvent(10, KeyCode::b));
    // The list eases there; wait for it to arrive, however slowly the machine runs.
    EXPECT_TRUE(QTest::qWaitFor([&] { return list->property("contentY").toReal() == top(); }, 30000));
    EXPECT_EQ(rows().front().decoded, decodedName(KeyCode::b));
}

TEST_F(DebugViewTest, closingTheWindowStopsTheCaptureAndKeepsTheRows) {
    startCapture();
    type(keyEvent(10, KeyCode::a));
    ui.view()->close();
    ui.settle();
    EXPECT_FALSE(model()->isCapturing());
    type(keyEvent(10, KeyCode::b));

    ui.view()->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(ui.view()));
    ui.settle();
    EXPECT_EQ(text("captureButton"), "Start Capture");
    EXPECT_EQ(text("statusText"), instruction);
    ASSERT_EQ(rows().size(), 1u);
    EXPECT_EQ(rows().front().decoded, decodedName(KeyCode::a));
}

TEST_F(DebugViewTest, theNoiseFilterHidesSpuriousEventsUntilSwitchedOff) {
    const PlatformEvent noise[] = {systemDefined(7, 0), systemDefined(18, 0), systemDefined(19, 0), systemDefined(211, 0),
                                   keyEvent(12, KeyCode::a, 0)};
    startCapture();
    for (const auto& event : noise) type(event);
    EXPECT_TRUE(rows().empty());

    ui.click(item("filterNoiseBox"));
    for (const auto& event : noise) type(event);
    QStringList directions;
    for (const ShownRow& row : rows()) directions << row.direction;
    EXPECT_EQ(directions.join(' '), QString::fromUtf8("\u2191 flags \u25C6 sys:211 \u25C6 sys:19 \u25C6 sys:18 \u25C6 sys:7"));
}

TEST_F(DebugViewTest, tabReachesEveryControlWithoutTogglingTheCapture) {
    startCapture();
    type(keyEvent(10, KeyCode::a));  // so that "Clear" is enabled
    const char* order[] = {"eventList", "clearButton", "autoScrollBox", "filterNoiseBox", "captureButton"};
    item("captureButton")->forceActiveFocus(Qt::TabFocusReason);
    for (const char* name : order) {
        ui.key(Qt::Key_Tab);
        QQuickItem* focused = ui.view()->activeFocusItem();
        EXPECT_TRUE(focused == item(name) || item(name)->isAncestorOf(focused)) << name;
    }
    EXPECT_TRUE(model()->isCapturing());
}

TEST_F(DebugViewTest, mappedKeysTellWhatTheirMappingDoesInOrangeWhileInterceptionRuns) {
    ui.store().setMappings({{Uuid::random(), SourceKey::regular(KeyCode::capsLock),
                             TargetAction::combination(KeyCode::space, {true, true, true, true}), true},
                            {Uuid::random(), SourceKey::regular(KeyCode::q), TargetAction::block(), true}});
    ui.settle();
    startCapture();
    type(keyEvent(10, KeyCode::q, 0x100));
    EXPECT_NE(rows().front().interceptionColor, orange);
    // Restarted after the main tap, the capture stands in front of it and still sees the blocked key.
    ASSERT_TRUE(ui.manager().start());
    model()->stopCapture();
    startCapture();
    type(keyEvent(10, KeyCode::h, 0x100));
    type(keyEvent(11, KeyCode::h, 0x100));
    type(keyEvent(12, KeyCode::leftCommand, 0x100108));
    type(keyEvent(10, KeyCode::s, 0x100108));
    type(keyEvent(12, KeyCode::leftCommand, 0x100));
    type(systemDefined(8, 0x00070A00));
    type(systemDefined(8, 0x00070B00));
    type(keyEvent(10, KeyCode::q, 0x100));
    type(keyEvent(12, KeyCode::capsLock, 0x10100));
    EXPECT_EQ(rows()[1].interception, QString::fromUtf8("\u26A1 Tap \u2192 Block"));
    EXPECT_EQ(rows()[1].interceptionColor, orange);
    ui.screenshot(QStringLiteral("debugger-capturing"));
}
