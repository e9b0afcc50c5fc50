// The debugger's capture: decoding, the noise filter and what it ignores.
#include "InterceptionFixture.h"
#include "interception/EventCapturer.h"
#include "ui/debugger/DebugEventWords.h"

using namespace orvane;
using namespace orvane::testing;
using orvane::debugwords::decodedInfo;
using orvane::debugwords::interceptionInfo;

namespace {

class EventCapturerTest : public InterceptionTest {
protected:
    std::vector<DebugEvent> records;
    bool filter = true;
    std::unique_ptr<EventCapturer> capturer;

    void SetUp() override {
        InterceptionTest::SetUp();
        capturer = std::make_unique<EventCapturer>(
            events, *store, *manager, [this](const DebugEvent& e) { records.push_back(e); }, [this] { return filter; });
    }
    void TearDown() override {
        capturer.reset();
        InterceptionTest::TearDown();
    }
    DebugEvent captureOne(const PlatformEvent& event) {
        records.clear();
        type(event);
        EXPECT_EQ(records.size(), 1u);
        return records.empty() ? DebugEvent{} : records.back();
    }
};

}  // namespace

TEST_F(EventCapturerTest, decodesKeysAndWhatTheirMappingsDo) {
    use({mapping(KeyCode::a, TargetAction::combination(KeyCode::b, {true, false, true, false})),
         mapping(KeyCode::s, TargetAction::combination(KeyCode::d, {})), mapping(KeyCode::q, TargetAction::block()),
         mapping(KeyCode::w, TargetAction::key(KeyCode::escape), false),
         mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::f13))});
    capturer->start();
    // The event, then the record's key name and mapping effect.
    const std::tuple<PlatformEvent, std::optional<std::string>, std::optional<std::string>> cases[] = {
        {keyDown(KeyCode::a), "\u2192 A", "\u26A1 Tap \u2192 \u2303\u2318B"},
        {keyUp(KeyCode::s), "\u2192 S", "\u26A1 Tap \u2192 D"},
        {keyDown(KeyCode::q), "\u2192 Q", "\u26A1 Tap \u2192 Block"},
        {keyDown(KeyCode::w), "\u2192 W", std::nullopt},  // disabled mapping
        {keyDown(KeyCode::e), "\u2192 E", std::nullopt},
        {systemDefined(8, 0x00000A00), "\u2192 Volume Up", "\u26A1 Tap \u2192 F13"},
        {systemDefined(8, 0x00000B00), "\u2192 Volume Up", "\u26A1 Tap \u2192 F13"},
        {systemDefined(8, 0x00010A00), "\u2192 Volume Down", std::nullopt},
        {systemDefined(8, 0x00190A00), std::nullopt, std::nullopt},
    };
    for (const auto& [event, decoded, interception] : cases) {
        const DebugEvent record = captureOne(event);
        EXPECT_EQ(decodedInfo(record), decoded);
        EXPECT_EQ(interceptionInfo(record), interception);
        EXPECT_FALSE(record.isInterceptionActive);
    }
    // The record's other fields are written out, and compared, by the capture scenario files. Last, a
    // system-defined event that did not convert.
    const DebugEvent bare = captureOne({.type = 14, .systemDefined = std::nullopt});
    EXPECT_FALSE(bare.event.subtype || debugwords::data1Hex(bare) || debugwords::hasKeyFields(bare) || decodedInfo(bare));
}

TEST_F(EventCapturerTest, capsLockThroughTheHidLayer) {
    use({mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::space, {true, true, false, false}))});
    capturer->start();
    store->setCapsLockHIDState(true, false);
    DebugEvent viaF18 = captureOne(keyDown(KeyCode::f18));
    EXPECT_EQ(viaF18.event.keyCode, 57);
    EXPECT_EQ(decodedInfo(viaF18), "\u2192 Caps Lock");
    EXPECT_EQ(interceptionInfo(viaF18), "\u26A1 HID \u2192 \u2325\u2318\u2423");

    store->setCapsLockHIDState(true, true);
    EXPECT_EQ(captureOne(keyDown(KeyCode::f18)).event.keyCode, 79);

    store->setCapsLockHIDState(false, false);
    EXPECT_EQ(interceptionInfo(captureOne(flagsChanged(KeyCode::capsLock, 0x10000))), "\u26A1 Tap \u2192 \u2325\u2318\u2423");
}

TEST_F(EventCapturerTest, theNoiseFilterHidesItsSubtypesAndEmptyFlagChangesOfKeyZero) {
    capturer->start();
    const PlatformEvent noise[] = {systemDefined(7, 0), systemDefined(18, 1), systemDefined(19, 2), systemDefined(211, 3),
                                   flagsChanged(KeyCode::a, 0)};
    for (bool filtering : {true, false}) {
        filter = filtering;
        records.clear();
        for (const auto& event : noise) type(event);
        EXPECT_EQ(records.size(), filtering ? 0u : std::size(noise));
    }
    filter = true;
    records.clear();
    type(flagsChanged(KeyCode::leftShift, 0));  // key code 56: not noise
    EXPECT_EQ(records.size(), 1u);
}

TEST_F(EventCapturerTest, neverChangesEventsAndIgnoresTheEnginesOwn) {
    use({mapping(KeyCode::a, TargetAction::key(KeyCode::b))});
    capturer->start();   // in front of the main tap: sees the key as typed
    manager->start();    // now in front of the capture: the capture sees only what passes
    settle();
    EXPECT_EQ(type(keyDown(KeyCode::a)), std::vector<std::string>{"keyDown 11 flags=0x0 synthetic"});
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(type(keyDown(KeyCode::c)), std::vector<std::string>{"keyDown 8 flags=0x0"});
    ASSERT_EQ(records.size(), 1u);
    EXPECT_TRUE(records[0].isInterceptionActive);

    capturer->stop();
    records.clear();
    type(keyDown(KeyCode::c));
    EXPECT_TRUE(records.empty());
    capturer->stop();  // stopping twice is harmless
}
