// A simulated platform, an isolated store and a tap manager, with helpers to type and read events.
#pragma once

#include "FakeHidutil.h"
#include "interception/EventTapManager.h"
#include "platform/Diagnostics.h"
#include "platform/sim/SimEventSystem.h"
#include "store/MappingStore.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTemporaryDir>

namespace orvane::testing {

inline PlatformEvent keyEvent(std::uint32_t type, KeyCode key, std::uint64_t flags = 0) {
    return {.type = type, .keyCode = static_cast<std::uint16_t>(rawValue(key)), .flags = flags, .systemDefined = std::nullopt};
}
inline PlatformEvent keyDown(KeyCode key, std::uint64_t flags = 0) { return keyEvent(10, key, flags); }
inline PlatformEvent keyUp(KeyCode key, std::uint64_t flags = 0) { return keyEvent(11, key, flags); }
inline PlatformEvent flagsChanged(KeyCode key, std::uint64_t flags) { return keyEvent(12, key, flags); }
inline PlatformEvent systemDefined(std::int16_t subtype, std::int64_t data1) {
    return {.type = 14, .systemDefined = SystemDefinedFields{subtype, data1}};
}

// Each as "keyDown 11 flags=0x120000 synthetic", the simulator's form: easy to compare as sequences.
std::vector<std::string> describe(const std::vector<PlatformEvent>& events);

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

    void SetUp() override {
        diagnostics::redirectTo(&lines);
        store = std::make_unique<MappingStore>(*defaults, HIDUtil(tool.path()));
        store->waitForCapsLockDecisions();
        manager = std::make_unique<EventTapManager>(events, *store);
    }
    void TearDown() override {
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
    // Types one event and returns what applications received because of it.
    std::vector<std::string> type(const PlatformEvent& event) {
        events.inject(event);
        return describe(events.takeDelivered());
    }
};

inline KeyMapping mapping(SourceKey source, TargetAction target, bool enabled = true) { return {Uuid::random(), source, target, enabled}; }
inline KeyMapping mapping(KeyCode source, TargetAction target, bool enabled = true) {
    return mapping(SourceKey::regular(source), target, enabled);
}

}  // namespace orvane::testing
