// The main tap over the simulated system: lifecycle, the adapter, posting and re-entry.
#include "InterceptionFixture.h"

#include <QSignalSpy>

using namespace orvane;
using namespace orvane::testing;

using EventTapManagerTest = InterceptionTest;
using Texts = std::vector<std::string>;

TEST_F(EventTapManagerTest, startIsIdempotentAndQueuesOneDecision) {
    QSignalSpy running(manager.get(), &EventTapManager::isRunningChanged);
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    const auto runsBefore = tool.calls().size();
    lines.clear();
    EXPECT_TRUE(manager->start());
    EXPECT_TRUE(manager->start());
    settle();
    EXPECT_TRUE(manager->isRunning());
    EXPECT_EQ(running.count(), 1);
    EXPECT_EQ(events.activeTapCount(), 1);
    EXPECT_EQ(tool.calls().size(), runsBefore + 1);  // one re-applied remapping, not two
    EXPECT_EQ(lines.front(), "Event tap started successfully");
}

TEST_F(EventTapManagerTest, stopClearsTheHidLayerButKeepsTheFlags) {
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    manager->start();
    settle();
    ASSERT_TRUE(store->isCapsLockHIDRemapped());
    lines.clear();
    manager->stop();
    EXPECT_EQ(lines, (Texts{"HIDUtil: Cleared HID remapping, Caps Lock restored", "Event tap stopped"}));
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::clearText());
    EXPECT_TRUE(store->isCapsLockHIDRemapped());
    EXPECT_TRUE(store->isCapsLockDirectHID());
    EXPECT_EQ(events.activeTapCount(), 0);
    EXPECT_EQ(type(keyDown(KeyCode::a)), Texts{"keyDown 0 flags=0x0"});

    // Stopping again prints nothing and runs no tool.
    const auto runs = tool.calls().size();
    lines.clear();
    manager->stop();
    EXPECT_TRUE(lines.empty());
    EXPECT_EQ(tool.calls().size(), runs);

    // The next start re-applies the remapping.
    manager->start();
    settle();
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::remapText(HIDUtil::capsLockUsage, 0x700000029));
}

TEST_F(EventTapManagerTest, startFailuresPublishTheirReason) {
    QSignalSpy errors(manager.get(), &EventTapManager::lastErrorChanged);
    accessibility.setTrusted(false);
    const auto runs = tool.calls().size();
    EXPECT_FALSE(manager->start());
    settle();
    EXPECT_FALSE(manager->isRunning());
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

TEST_F(EventTapManagerTest, replacementsArePostedMarkedAndNotMatchedAgain) {
    use({mapping(KeyCode::a, TargetAction::key(KeyCode::b)), mapping(KeyCode::b, TargetAction::key(KeyCode::a)),
         mapping(KeyCode::f5, TargetAction::combination(KeyCode::four, {true, false, false, true})),
         mapping(KeyCode::q, TargetAction::block()), mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::space, {false, true}))});
    manager->start();
    settle();
    // The test's store never reached the HID layer for Caps Lock (the fake tool says yes, though),
    // so pretend it did not, to drive the tap path.
    store->setCapsLockHIDState(false, false);
    EXPECT_EQ(type(keyDown(KeyCode::a)), Texts{"keyDown 11 flags=0x0 synthetic"});
    EXPECT_EQ(type(keyUp(KeyCode::b)), Texts{"keyUp 0 flags=0x0 synthetic"});
    EXPECT_EQ(type(keyDown(KeyCode::f5, 0x80000)), Texts{"keyDown 21 flags=0x120000 synthetic"});
    EXPECT_EQ(type(keyDown(KeyCode::q)), Texts{});
    EXPECT_EQ(type(keyDown(KeyCode::w, 0x20000)), Texts{"keyDown 13 flags=0x20000"});
    EXPECT_EQ(type(flagsChanged(KeyCode::capsLock, 0x10000)),
              (Texts{"keyDown 49 flags=0x80000 synthetic", "keyUp 49 flags=0x80000 synthetic"}));
    PlatformEvent foreign = keyDown(KeyCode::a);
    foreign.userData = syntheticEventMarker;
    EXPECT_EQ(type(foreign), Texts{"keyDown 0 flags=0x0 synthetic"});
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

TEST_F(EventTapManagerTest, aTapDisabledBySystemIsReenabledAtOnce) {
    use({mapping(KeyCode::a, TargetAction::key(KeyCode::b))});
    manager->start();
    settle();
    lines.clear();
    for (std::uint32_t reason : {TapEventType::tapDisabledByTimeout, TapEventType::tapDisabledByUserInput}) {
        events.disableBySystem(manager->eventTap(), reason);
        EXPECT_TRUE(manager->isRunning());
        EXPECT_EQ(type(keyDown(KeyCode::a)), Texts{"keyDown 11 flags=0x0 synthetic"});
    }
    EXPECT_EQ(lines, Texts(2, "Event tap was disabled, re-enabling..."));
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
