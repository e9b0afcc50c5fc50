// Recording one key through the simulated system, with the main tap paused around it.
#include "InterceptionFixture.h"
#include "interception/KeyRecordingSession.h"

using namespace orvane;
using namespace orvane::testing;

namespace {

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
        // Right Command alone, Command+Shift+4, Fn, Mute and an unknown code: see the scenario files.
        {"right command then K", true, {flagsChanged(KeyCode::rightCommand, 0x100000), keyDown(KeyCode::k, 0x100000)}, {true, false},
         "\u2318K"},
        {"modifiers ignored when not allowed", false, {keyDown(KeyCode::four, 0x1E0000)}, {false}, "4"},
        {"caps lock toggle", false, {flagsChanged(KeyCode::capsLock, 0x0)}, {false}, "\u21EA"},
        {"play pause, then mute on another subtype", false, {systemDefined(8, 0x00100A00), systemDefined(7, 0x00070A00)},
         {true, true}, std::nullopt},
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

// The pause and resume themselves, and what they print, are in the scenario files.
TEST_F(KeyRecorderTest, theResumedTapReappliesTheCapsLockRemappingAndAStoppedTapStaysStopped) {
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    manager->start();
    settle();
    field->startRecording();
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::clearText());
    type(keyDown(KeyCode::a));
    settle();
    EXPECT_TRUE(manager->isRunning());
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::remapText(HIDUtil::capsLockUsage, 0x700000029));

    manager->stop();
    field->startRecording();
    field->stopRecording();
    EXPECT_FALSE(manager->isRunning());
}

TEST_F(KeyRecorderTest, withoutPermissionItWaitsForCancelWhichRestoresTheMainTap) {
    manager->start();
    settle();
    accessibility.setTrusted(false);
    field->startRecording();  // what it prints: see the scenario files
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
