// The main tap over the simulated system: lifecycle, failures and live mapping changes.
#include "InterceptionFixture.h"

#include <QSignalSpy>

using namespace orvane;
using namespace orvane::testing;

using EventTapManagerTest = InterceptionTest;
using Texts = std::vector<std::string>;

// What starting and stopping print, and the remapping re-applied by the next start: see the scenario files.
TEST_F(EventTapManagerTest, startIsIdempotentAndStopClearsTheHidLayerButKeepsTheFlags) {
    QSignalSpy running(manager.get(), &EventTapManager::isRunningChanged);
    use({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    const auto runsBefore = tool.calls().size();
    EXPECT_TRUE(manager->start());
    EXPECT_TRUE(manager->start());
    settle();
    EXPECT_EQ(running.count(), 1);
    EXPECT_EQ(events.activeTapCount(), 1);
    EXPECT_EQ(tool.calls().size(), runsBefore + 1);  // one re-applied remapping, not two

    manager->stop();
    EXPECT_EQ(running.count(), 2);
    EXPECT_EQ(events.activeTapCount(), 0);
    EXPECT_EQ(tool.calls().back().last(), HIDUtil::clearText());
    EXPECT_TRUE(store->isCapsLockHIDRemapped());  // kept for the next start
    EXPECT_TRUE(store->isCapsLockDirectHID());
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
