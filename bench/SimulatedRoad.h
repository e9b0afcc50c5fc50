// The interception road over the simulated system, as the benchmarks drive it: a store over a
// throwaway settings file, a started main tap, optionally the debugger's capture tap in front.
#pragma once

#include "interception/EventCapturer.h"
#include "interception/EventTapManager.h"
#include "platform/Diagnostics.h"
#include "platform/sim/SimEventSystem.h"
#include "store/MappingStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

namespace orvane {

// 100 mappings: 99 of other keys (every other one enabled), then A as the given target.
inline std::vector<KeyMapping> hundredMappings(TargetAction forA = TargetAction::key(KeyCode::b)) {
    std::vector<KeyMapping> list;
    const auto keys = allKeyCodes();
    for (std::size_t i = 0; list.size() < 99; ++i) {
        const KeyCode source = keys[i % keys.size()];
        if (source == KeyCode::a || source == KeyCode::z) continue;
        list.push_back({Uuid::random(), SourceKey::regular(source), TargetAction::key(KeyCode::x), i % 2 == 0});
    }
    list.push_back({Uuid::random(), SourceKey::regular(KeyCode::a), forA, true});
    return list;
}

struct Road {
    std::vector<std::string> quietLines;
    QTemporaryDir dir;
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    SimAccessibility accessibility;
    SimEventSystem events{accessibility};
    std::unique_ptr<MappingStore> store;
    std::unique_ptr<EventTapManager> manager;
    std::unique_ptr<EventCapturer> capturer;
    std::size_t delivered = 0;

    explicit Road(bool withCapture) {
        diagnostics::redirectTo(&quietLines);
        store = std::make_unique<MappingStore>(*defaults, HIDUtil(QStringLiteral("/bin/true")));
        store->setMappings(hundredMappings());
        store->waitForCapsLockDecisions();
        manager = std::make_unique<EventTapManager>(events, *store);
        manager->start();
        store->waitForCapsLockDecisions();
        if (withCapture) {
            capturer = std::make_unique<EventCapturer>(
                events, *store, *manager, [](const DebugEvent& record) { benchmark::DoNotOptimize(record); }, [] { return true; });
            capturer->start();
        }
        events.setOutput([this](const PlatformEvent&) { ++delivered; });
    }
    ~Road() {
        capturer.reset();
        manager.reset();
        store.reset();
        diagnostics::redirectTo(nullptr);
    }
};

}  // namespace orvane
