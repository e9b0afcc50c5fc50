// The main tap and the key recorder over the simulated system, with an isolated store. What they do to
// typed keys, what they print and the debugger's capture: the scenario files.
#include "Mappings.h"
#include "OutputText.h"
#include "PrintedLines.h"
#include "SimWorld.h"
#include "interception/KeyRecordingSession.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTimer>

using namespace orvane;
using namespace orvane::testing;
using Texts = std::vector<std::string>;

namespace {

PlatformEvent key(std::uint32_t type, KeyCode code, std::uint64_t flags = 0) {
    return {.type = type, .keyCode = static_cast<std::uint16_t>(rawValue(code)), .flags = flags, .systemDefined = std::nullopt};
}

struct InterceptionTest : ::testing::Test, SimWorld {
    PrintedLines lines;

    void use(std::vector<KeyMapping> mappings) { store.setMappings(std::move(mappings)), settle(); }
    // Types one event and returns what applications received because of it, in the simulator's
    // words ("keyDown 11 flags=0x120000 synthetic ; ...", "-" for nothing).
    std::string type(const PlatformEvent& event) { return events.inject(event), sim::describeDelivered(events.takeDelivered()); }
};
using EventTapManagerTest = InterceptionTest;

struct KeyRecorderTest : InterceptionTest {
    KeyRecordingSession field{events, manager};
    QSignalSpy reported{&field, &KeyRecordingSession::keyRecorded};
};

}  // namespace

// What starting and stopping print, that starting twice re-applies the remapping once, and that
// stopping clears the HID layer: the scenario files.
TEST_F(EventTapManagerTest, startIsIdempotentAndStopClearsTheHidLayerButKeepsTheFlags) {
    QSignalSpy running(&manager, &EventTapManager::isRunningChanged);
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    EXPECT_TRUE(manager.start() && manager.start());
    settle();
    EXPECT_EQ(running.count(), 1);
    EXPECT_EQ(events.activeTapCount(), 1);
    manager.stop();  // its signal: the list view's switch and the status item follow it
    EXPECT_EQ(events.activeTapCount(), 0);
    EXPECT_TRUE(store.isCapsLockHIDRemapped() && store.isCapsLockDirectHID());  // kept for the next start
}

// Start then stop in quick succession (a recorder field resuming then pausing the tap): the clear
// lands after every decision queued before it, and the windows keep being served meanwhile.
TEST_F(EventTapManagerTest, stopClearsAfterTheQueuedDecisionsWhileTheEventLoopTurns) {
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    tool.setDelay("0.3");
    manager.start();
    store.setMappings({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::tab))});
    QTimer ticker;
    QSignalSpy ticks(&ticker, &QTimer::timeout);
    ticker.start(20);
    manager.stop();
    EXPECT_GT(ticks.count(), 0);
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::clearText());
    const Texts last(lines.end() - 4, lines.end());
    EXPECT_EQ(last, (Texts{"HIDUtil: Remapped Caps Lock → Tab at HID layer", "MappingStore: Using direct HID mapping for Caps Lock → Tab",
                           "HIDUtil: Cleared HID remapping, Caps Lock restored", "Event tap stopped"}));
}

TEST_F(EventTapManagerTest, startFailuresPublishTheirReason) {
    QSignalSpy errors(&manager, &EventTapManager::lastErrorChanged);
    accessibility.setTrusted(false);
    const auto runs = tool.calls().size();
    EXPECT_FALSE(manager.start());
    settle();
    EXPECT_EQ(manager.lastErrorText(), "Failed to create event tap. Please grant Accessibility permission.");
    EXPECT_EQ(tool.calls().size(), runs);  // no decision queued
    EXPECT_TRUE(lines.empty());

    accessibility.setTrusted(true), events.setSourceCreationFails(true);
    EXPECT_FALSE(manager.start());
    EXPECT_EQ(manager.lastErrorText(), "Failed to create run loop source");
    EXPECT_TRUE(events.activeTapCount() == 0 && !manager.eventTap());

    events.setSourceCreationFails(false);
    EXPECT_TRUE(manager.start() && !manager.lastError().has_value());
    EXPECT_EQ(errors.count(), 3);
}

TEST_F(EventTapManagerTest, aFailedCreationIsReportedAndTheRestStillPosted) {
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    manager.start(), settle();
    store.setCapsLockHIDState(false, false);
    lines.clear();
    events.failNextKeyboardEventCreations(1);
    EXPECT_EQ(type(key(12, KeyCode::capsLock, 0x10000)), "keyUp 53 flags=0x0 synthetic");
    EXPECT_EQ(lines, Texts{"Failed to create keyboard event for keycode 53"});
    events.failNextKeyboardEventCreations(2);
    EXPECT_EQ(type(key(12, KeyCode::capsLock)), "-");  // still swallowed
}

TEST_F(EventTapManagerTest, mappingChangesApplyToTheNextEvent) {
    manager.start(), settle();
    EXPECT_EQ(type(key(10, KeyCode::a)), "keyDown 0 flags=0x0");
    store.addMapping(mapping(KeyCode::a, TargetAction::block()));
    EXPECT_EQ(type(key(10, KeyCode::a)), "-");
    store.toggleMapping(store.mappings().back().id);
    EXPECT_EQ(type(key(10, KeyCode::a)), "keyDown 0 flags=0x0");
}

// A slow tool keeps the pause's clear waiting, and the window closes meanwhile.
TEST_F(KeyRecorderTest, aRecordingEndedWhileThePauseWaitsForTheToolResumesTheTap) {
    manager.start(), settle();
    tool.setDelay("0.3");
    QTimer::singleShot(50, &field, [this] { field.stopRecording(); });
    field.startRecording();
    EXPECT_TRUE(!field.isRecording() && manager.isRunning());
    EXPECT_EQ(events.activeTapCount(), 1);  // the main tap, and no recorder tap left behind
}

TEST_F(KeyRecorderTest, withoutPermissionItWaitsForCancelWhichRestoresTheMainTap) {
    manager.start(), settle();
    accessibility.setTrusted(false);
    field.startRecording();  // what it prints: see the scenario files
    EXPECT_TRUE(field.isRecording() && !manager.isRunning());
    accessibility.setTrusted(true);
    field.stopRecording();
    EXPECT_TRUE(!field.isRecording() && manager.isRunning());
}

TEST_F(KeyRecorderTest, keysTypedBeforeTheDeferredStopAreAppliedInOrderAndTheLastWins) {
    field.startRecording();
    for (const KeyCode typed : {KeyCode::a, KeyCode::b}) type(key(10, typed));
    settle();
    ASSERT_EQ(reported.count(), 2);
    EXPECT_EQ(field.recordedKey()->sourceKey, SourceKey::regular(KeyCode::b));
    EXPECT_FALSE(field.isRecording());
}
