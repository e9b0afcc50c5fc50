// Recording one key through the simulated system, with the main tap paused around it.
#include "InterceptionFixture.h"
#include "interception/KeyRecordingSession.h"

#include <QSignalSpy>

using namespace orvane;
using namespace orvane::testing;

namespace {

using Texts = std::vector<std::string>;

PlatformEvent unassignedKeyDown() {
    PlatformEvent event = keyDown(KeyCode::a);
    event.keyCode = 10;  // names no key
    return event;
}

class KeyRecorderTest : public InterceptionTest {
protected:
    std::unique_ptr<KeyRecordingSession> field;
    std::vector<RecordedKey> reported;

    void SetUp() override {
        InterceptionTest::SetUp();
        field = std::make_unique<KeyRecordingSession>(events, *manager);
        QObject::connect(field.get(), &KeyRecordingSession::keyRecorded, [this](const RecordedKey& key) { reported.push_back(key); });
    }
    void TearDown() override {
        field.reset();
        InterceptionTest::TearDown();
    }
    void record(bool allowModifiers) {
        field->setAllowModifiers(allowModifiers);
        field->startRecording();
        lines.clear();
    }
};

}  // namespace

TEST_F(KeyRecorderTest, decisionsWithAndWithoutModifiers) {
    const struct {
        const char* name;
        bool allowModifiers;
        std::vector<PlatformEvent> typed;
        std::vector<bool> passes;  // per typed event: did it reach applications
        std::optional<std::string> label;
    } cases[] = {
        {"right command alone", false, {flagsChanged(KeyCode::rightCommand, 0x100000)}, {false}, "\u2318"},
        {"right command then K", true, {flagsChanged(KeyCode::rightCommand, 0x100000), keyDown(KeyCode::k, 0x100000)}, {true, false},
         "\u2318K"},
        {"command shift 4", true, {keyDown(KeyCode::four, 0x120000)}, {false}, "\u21E7\u23184"},
        {"modifiers ignored when not allowed", false, {keyDown(KeyCode::four, 0x1E0000)}, {false}, "4"},
        {"fn is swallowed but not recorded", false, {flagsChanged(KeyCode::function, 0x800000)}, {false}, std::nullopt},
        {"caps lock toggle", false, {flagsChanged(KeyCode::capsLock, 0x0)}, {false}, "\u21EA"},
        {"unknown code passes", false, {unassignedKeyDown(), keyDown(KeyCode::a)}, {true, false}, "A"},
        {"mute press", false, {systemDefined(8, 0x00070A00)}, {false}, "\U0001F507"},
        {"mute release, volume up, play pause", false,
         {systemDefined(8, 0x00070B00), systemDefined(8, 0x00000A00), systemDefined(8, 0x00100A00), systemDefined(7, 0x00070A00)},
         {true, true, true, true}, std::nullopt},
        {"key ups pass", true, {keyUp(KeyCode::a), flagsChanged(KeyCode::leftShift, 0x20000)}, {true, true}, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        reported.clear();
        record(c.allowModifiers);
        for (std::size_t i = 0; i < c.typed.size(); ++i) {
            EXPECT_EQ(type(c.typed[i]).size(), c.passes[i] ? 1u : 0u) << i;
        }
        settle();
        if (c.label) {
            ASSERT_EQ(reported.size(), 1u);
            EXPECT_EQ(reported[0].label(), *c.label);
            EXPECT_EQ(field->recordedKey(), reported[0]);
            EXPECT_FALSE(field->isRecording());
        } else {
            EXPECT_TRUE(reported.empty());
            EXPECT_TRUE(field->isRecording());
            field->stopRecording();
        }
        EXPECT_EQ(events.activeTapCount(), 0);
    }
}

TEST_F(KeyRecorderTest, printsWhatItSeesAndDecodes) {
    record(true);
    type(keyDown(KeyCode::four, 0x120000));
    EXPECT_EQ(lines, (Texts{"KeyRecorder: Received event type: 10", "KeyRecorder: Got keyDown event", "KeyRecorder: Decoded key: 4"}));
    settle();
    record(false);
    type(flagsChanged(KeyCode::function, 0x800000));
    type(systemDefined(8, 0x00070A00));
    EXPECT_EQ(lines, (Texts{"KeyRecorder: Received event type: 12", "KeyRecorder: Decoded modifier: Fn",
                            "KeyRecorder: Received event type: 14", "KeyRecorder: Got system-defined event",
                            "KeyRecorder: Decoded system key: Mute"}));
    settle();
}

TEST_F(KeyRecorderTest, pausesAndResumesTheMainTap) {
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape)), mapping(KeyCode::a, TargetAction::key(KeyCode::b))});
    manager->start();
    settle();
    lines.clear();
    field->startRecording();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(lines, (Texts{"HIDUtil: Cleared HID remapping, Caps Lock restored", "Event tap stopped",
                            "KeyRecorder: Event tap started successfully"}));
    // The key arrives as itself, not as its mapping.
    EXPECT_EQ(type(keyDown(KeyCode::a)), Texts{});
    settle();
    ASSERT_EQ(reported.size(), 1u);
    EXPECT_EQ(reported[0].sourceKey, SourceKey::regular(KeyCode::a));
    EXPECT_TRUE(manager->isRunning());
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::remapText(HIDUtil::capsLockUsage, 0x700000029));
    EXPECT_EQ(type(keyDown(KeyCode::a)), Texts{"keyDown 11 flags=0x0 synthetic"});

    // Recording while stopped leaves the main tap stopped.
    manager->stop();
    field->startRecording();
    field->stopRecording();
    EXPECT_FALSE(manager->isRunning());
}

TEST_F(KeyRecorderTest, withoutPermissionItWaitsForCancelWhichRestoresTheMainTap) {
    manager->start();
    settle();
    accessibility.setTrusted(false);
    lines.clear();
    field->startRecording();
    EXPECT_EQ(lines.back(), "KeyRecorder: Failed to create event tap - check Accessibility permission");
    EXPECT_TRUE(field->isRecording());
    EXPECT_FALSE(manager->isRunning());
    accessibility.setTrusted(true);
    field->stopRecording();
    EXPECT_TRUE(manager->isRunning());
    EXPECT_FALSE(field->isRecording());
}

TEST_F(KeyRecorderTest, keysTypedBeforeTheDeferredStopAreAppliedInOrderAndTheLastWins) {
    record(false);
    type(keyDown(KeyCode::a));
    type(keyDown(KeyCode::b));
    settle();
    ASSERT_EQ(reported.size(), 2u);
    EXPECT_EQ(field->recordedKey()->sourceKey, SourceKey::regular(KeyCode::b));
    EXPECT_FALSE(field->isRecording());
}
