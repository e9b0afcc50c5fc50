// The main tap, the key recorder and the debugger's capture over the simulated system, with an isolated store.
#include "FakeHidutil.h"
#include "Mappings.h"
#include "OutputText.h"
#include "interception/EventCapturer.h"
#include "interception/EventTapManager.h"
#include "interception/KeyRecordingSession.h"
#include "platform/Diagnostics.h"
#include "platform/sim/SimEventSystem.h"
#include "store/MappingStore.h"
#include "ui/debugger/DebugEventWords.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

using namespace orvane;
using namespace orvane::testing;
using orvane::debugwords::decodedInfo;
using orvane::debugwords::interceptionInfo;
using Texts = std::vector<std::string>;

namespace {

PlatformEvent keyEvent(std::uint32_t type, KeyCode key, std::uint64_t flags = 0) {
    return {.type = type, .keyCode = static_cast<std::uint16_t>(rawValue(key)), .flags = flags, .systemDefined = std::nullopt};
}
PlatformEvent keyDown(KeyCode key, std::uint64_t flags = 0) { return keyEvent(10, key, flags); }
PlatformEvent keyUp(KeyCode key) { return keyEvent(11, key); }
PlatformEvent flagsChanged(KeyCode key, std::uint64_t flags) { return keyEvent(12, key, flags); }
PlatformEvent systemDefined(std::int16_t subtype, std::int64_t data1) {
    return {.type = 14, .systemDefined = SystemDefinedFields{subtype, data1}};
}

class InterceptionTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    FakeHidutil tool;
    std::vector<std::string> lines;
    SimAccessibility accessibility;
    SimEventSystem events{accessibility};
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    std::unique_ptr<MappingStore> store;
    std::unique_ptr<EventTapManager> manager;

    InterceptionTest() {
        diagnostics::redirectTo(&lines);
        store = std::make_unique<MappingStore>(*defaults, HIDUtil(tool.path()));
        store->waitForCapsLockDecisions();
        manager = std::make_unique<EventTapManager>(events, *store);
    }
    ~InterceptionTest() override {
        manager.reset();
        store.reset();
        diagnostics::redirectTo(nullptr);
    }
    void use(std::vector<KeyMapping> mappings) {
        store->setMappings(std::move(mappings));
        settle();
    }
    // Lets deferred work and queued Caps Lock decisions finish.
    void settle() {
        QCoreApplication::processEvents();
        store->waitForCapsLockDecisions();
        QCoreApplication::processEvents();
    }
    // Types one event and returns what applications received because of it, in the simulator's
    // words ("keyDown 11 flags=0x120000 synthetic").
    Texts type(const PlatformEvent& event) {
        events.inject(event);
        Texts texts;
        for (const auto& delivered : events.takeDelivered()) texts.push_back(sim::describeEvent(delivered));
        return texts;
    }
};
using EventTapManagerTest = InterceptionTest;

class KeyRecorderTest : public InterceptionTest {
protected:
    KeyRecordingSession field{events, *manager};
    std::vector<RecordedKey> reported;

    KeyRecorderTest() {
        QObject::connect(&field, &KeyRecordingSession::keyRecorded, [this](const RecordedKey& key) { reported.push_back(key); });
    }
};

class EventCapturerTest : public InterceptionTest {
protected:
    std::vector<DebugEvent> records;
    bool filter = true;
    EventCapturer capturer{events, *store, *manager, [this](const DebugEvent& e) { records.push_back(e); },
                           [this] { return filter; }};

    DebugEvent captureOne(const PlatformEvent& event) {
        records.clear();
        type(event);
        EXPECT_EQ(records.size(), 1u);
        return records.empty() ? DebugEvent{} : records.back();
    }
};

}  // namespace

// What starting and stopping print, that starting twice re-applies the remapping once, and that
// stopping clears the HID layer: the scenario files.
TEST_F(EventTapManagerTest, startIsIdempotentAndStopClearsTheHidLayerButKeepsTheFlags) {
    QSignalSpy running(manager.get(), &EventTapManager::isRunningChanged);
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    EXPECT_TRUE(manager->start());
    EXPECT_TRUE(manager->start());
    settle();
    EXPECT_EQ(running.count(), 1);
    EXPECT_EQ(events.activeTapCount(), 1);
    manager->stop();  // its signal: the list view's switch and the status item follow it
    EXPECT_EQ(events.activeTapCount(), 0);
    EXPECT_TRUE(store->isCapsLockHIDRemapped() && store->isCapsLockDirectHID());  // kept for the next start
}

// Start then stop in quick succession (a recorder field resuming then pausing the tap): the clear
// lands after every decision queued before it, and the windows keep being served meanwhile.
TEST_F(EventTapManagerTest, stopClearsAfterTheQueuedDecisionsWhileTheEventLoopTurns) {
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    tool.setDelay("0.3");
    manager->start();
    store->setMappings({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::tab))});
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, [&] { ++ticks; });
    ticker.start(20);
    manager->stop();
    EXPECT_GT(ticks, 0);
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::clearText());
    const Texts last(lines.end() - 4, lines.end());
    EXPECT_EQ(last, (Texts{"HIDUtil: Remapped Caps Lock → Tab at HID layer", "MappingStore: Using direct HID mapping for Caps Lock → Tab",
                           "HIDUtil: Cleared HID remapping, Caps Lock restored", "Event tap stopped"}));
}

TEST_F(EventTapManagerTest, startFailuresPublishTheirReason) {
    QSignalSpy errors(manager.get(), &EventTapManager::lastErrorChanged);
    accessibility.setTrusted(false);
    const auto runs = tool.calls().size();
    EXPECT_FALSE(manager->start());
    settle();
    EXPECT_EQ(manager->lastErrorText(), "Failed to create event tap. Please grant Accessibility permission.");
    EXPECT_EQ(tool.calls().size(), runs);  // no decision queued
    EXPECT_TRUE(lines.empty());

    accessibility.setTrusted(true);
    events.setSourceCreationFails(true);
    EXPECT_FALSE(manager->start());
    EXPECT_EQ(manager->lastErrorText(), "Failed to create run loop source");
    EXPECT_EQ(events.activeTapCount(), 0);
    EXPECT_EQ(manager->eventTap(), nullptr);

    events.setSourceCreationFails(false);
    EXPECT_TRUE(manager->start());
    EXPECT_FALSE(manager->lastError().has_value());
    EXPECT_EQ(errors.count(), 3);
}

TEST_F(EventTapManagerTest, aFailedCreationIsReportedAndTheRestStillPosted) {
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    manager->start();
    settle();
    store->setCapsLockHIDState(false, false);
    lines.clear();
    events.failNextKeyboardEventCreations(1);
    EXPECT_EQ(type(flagsChanged(KeyCode::capsLock, 0x10000)), Texts{"keyUp 53 flags=0x0 synthetic"});
    EXPECT_EQ(lines, Texts{"Failed to create keyboard event for keycode 53"});
    events.failNextKeyboardEventCreations(2);
    EXPECT_EQ(type(flagsChanged(KeyCode::capsLock, 0x0)), Texts{});  // still swallowed
}

TEST_F(EventTapManagerTest, mappingChangesApplyToTheNextEvent) {
    manager->start();
    settle();
    EXPECT_EQ(type(keyDown(KeyCode::a)), Texts{"keyDown 0 flags=0x0"});
    store->addMapping(mapping(KeyCode::a, TargetAction::block()));
    EXPECT_EQ(type(keyDown(KeyCode::a)), Texts{});
    store->toggleMapping(store->mappings().back().id);
    EXPECT_EQ(type(keyDown(KeyCode::a)), Texts{"keyDown 0 flags=0x0"});
}

// Allowed modifiers held before a key, Right Command alone, Fn, Mute, Volume Up and an unknown code: the
// scenario files.
TEST_F(KeyRecorderTest, decisionsWithoutModifiers) {
    // What is typed, whether it reaches applications, and the label recorded.
    const std::tuple<PlatformEvent, bool, std::optional<std::string>> cases[] = {
        {keyDown(KeyCode::four, 0x1E0000), false, "4"},           // the held modifiers are ignored
        {flagsChanged(KeyCode::capsLock, 0x0), false, "\u21EA"},  // a toggle is a press
        {systemDefined(7, 0x00070A00), true, std::nullopt},       // Mute, but not a key's subtype
        {keyUp(KeyCode::a), true, std::nullopt},
    };
    for (const auto& [event, passes, label] : cases) {
        SCOPED_TRACE(label.value_or(std::to_string(event.type)));
        reported.clear();
        field.setAllowModifiers(false);
        field.startRecording();
        EXPECT_EQ(type(event).size(), passes ? 1u : 0u);
        settle();
        EXPECT_EQ(field.isRecording(), !label);
        field.stopRecording();
        EXPECT_EQ(events.activeTapCount(), 0);
        ASSERT_EQ(reported.size(), label ? 1u : 0u);
        if (!label) continue;
        EXPECT_EQ(reported[0].label(), *label);
        EXPECT_EQ(field.recordedKey(), reported[0]);
    }
}

// The pause and resume themselves, and what they print, are in the scenario files.
TEST_F(KeyRecorderTest, theResumedTapReappliesTheCapsLockRemappingAndAStoppedTapStaysStopped) {
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    manager->start();
    settle();
    field.startRecording();
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::clearText());
    type(keyDown(KeyCode::a));  // recorded: the main tap resumes
    settle();
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::remapText(HIDUtil::capsLockUsage, 0x700000029));

    manager->stop();
    field.startRecording();
    field.stopRecording();
    EXPECT_FALSE(manager->isRunning());
}

// A slow tool keeps the pause's clear waiting, and the window closes meanwhile.
TEST_F(KeyRecorderTest, aRecordingEndedWhileThePauseWaitsForTheToolResumesTheTap) {
    manager->start();
    settle();
    tool.setDelay("0.3");
    QTimer::singleShot(50, &field, [this] { field.stopRecording(); });
    field.startRecording();
    EXPECT_FALSE(field.isRecording());
    EXPECT_TRUE(manager->isRunning());
    EXPECT_EQ(events.activeTapCount(), 1);  // the main tap, and no recorder tap left behind
}

TEST_F(KeyRecorderTest, withoutPermissionItWaitsForCancelWhichRestoresTheMainTap) {
    manager->start();
    settle();
    accessibility.setTrusted(false);
    field.startRecording();  // what it prints: see the scenario files
    EXPECT_TRUE(field.isRecording());
    EXPECT_FALSE(manager->isRunning());
    accessibility.setTrusted(true);
    field.stopRecording();
    EXPECT_TRUE(manager->isRunning());
    EXPECT_FALSE(field.isRecording());
}

TEST_F(KeyRecorderTest, keysTypedBeforeTheDeferredStopAreAppliedInOrderAndTheLastWins) {
    field.startRecording();
    type(keyDown(KeyCode::a));
    type(keyDown(KeyCode::b));
    settle();
    ASSERT_EQ(reported.size(), 2u);
    EXPECT_EQ(field.recordedKey()->sourceKey, SourceKey::regular(KeyCode::b));
    EXPECT_FALSE(field.isRecording());
}

// Unmapped keys, a disabled mapping, key code 10, mapped keys' records, the noise filter, the capture's place
// in front of the main tap, events passed on unchanged and our own posted ones left out: the capture scenario
// files, which also write out and compare the records' other fields; a blocked key and stopping: the debugger view.
TEST_F(EventCapturerTest, decodesKeysAndWhatTheirMappingsDo) {
    use({mapping(KeyCode::a, TargetAction::combination(KeyCode::b, {true, false, true, false})),
         mapping(KeyCode::s, TargetAction::combination(KeyCode::d, {})),
         mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::f13))});
    capturer.start();
    // The event, then the record's key name and mapping effect.
    const std::tuple<PlatformEvent, std::optional<std::string>, std::optional<std::string>> cases[] = {
        {keyDown(KeyCode::a), "\u2192 A", "\u26A1 Tap \u2192 \u2303\u2318B"},
        {keyUp(KeyCode::s), "\u2192 S", "\u26A1 Tap \u2192 D"},
        {systemDefined(8, 0x00000A00), "\u2192 Volume Up", "\u26A1 Tap \u2192 F13"},
        {systemDefined(8, 0x00010A00), "\u2192 Volume Down", std::nullopt},
        {systemDefined(8, 0x00190A00), std::nullopt, std::nullopt},
    };
    for (const auto& [event, decoded, interception] : cases) {
        const DebugEvent record = captureOne(event);
        EXPECT_EQ(decodedInfo(record), decoded);
        EXPECT_EQ(interceptionInfo(record), interception);
        EXPECT_FALSE(record.isInterceptionActive);
    }
    // A system-defined event that did not convert.
    const DebugEvent bare = captureOne({.type = 14, .systemDefined = std::nullopt});
    EXPECT_FALSE(bare.event.subtype || debugwords::data1Hex(bare) || debugwords::hasKeyFields(bare) || decodedInfo(bare));
}

TEST_F(EventCapturerTest, capsLockThroughTheHidLayer) {
    use({mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::space, {true, true, false, false}))});
    capturer.start();
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
