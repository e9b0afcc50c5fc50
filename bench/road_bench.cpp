// The whole interception road through the simulated system: main tap, engine, posting, re-entry, delivery.
#include "interception/EventCapturer.h"
#include "interception/EventTapManager.h"
#include "platform/Diagnostics.h"
#include "platform/sim/SimEventSystem.h"
#include "store/MappingStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

using namespace orvane;

namespace {

// 100 mappings, the benchmarked one last; a started main tap; optionally a capture tap in front.
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
        std::vector<KeyMapping> list;
        const auto keys = allKeyCodes();
        for (std::size_t i = 0; list.size() < 99; ++i) {
            const KeyCode source = keys[i % keys.size()];
            if (source == KeyCode::a || source == KeyCode::z) continue;
            list.push_back({Uuid::random(), SourceKey::regular(source), TargetAction::key(KeyCode::x), i % 2 == 0});
        }
        list.push_back({Uuid::random(), SourceKey::regular(KeyCode::a), TargetAction::key(KeyCode::b), true});
        store->setMappings(std::move(list));
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

void runRoad(benchmark::State& state, bool withCapture, KeyCode key) {
    Road road(withCapture);
    PlatformEvent event;
    event.type = 10;
    event.keyCode = static_cast<std::uint16_t>(rawValue(key));
    for (auto _ : state) road.events.inject(event);
    state.SetItemsProcessed(state.iterations());
    if (road.delivered != static_cast<std::size_t>(state.iterations())) state.SkipWithError("an event went missing");
}

void passingKey(benchmark::State& state) { runRoad(state, false, KeyCode::z); }
void replacedKey(benchmark::State& state) { runRoad(state, false, KeyCode::a); }
void passingKeyWithCapture(benchmark::State& state) { runRoad(state, true, KeyCode::z); }
void replacedKeyWithCapture(benchmark::State& state) { runRoad(state, true, KeyCode::a); }

// The engine's decision alone for the same replaced key and list, to compare the road against.
void engineDecisionAlone(benchmark::State& state) {
    Road road(false);
    const RemapEngine engine(*road.store);
    const TapEvent event = TapEvent::decode(TapEventType::keyDown, static_cast<std::uint16_t>(rawValue(KeyCode::a)), 0, 0);
    for (auto _ : state) {
        benchmark::DoNotOptimize(event);
        TapDecision decision = engine.handleEvent(event);
        benchmark::DoNotOptimize(decision);
    }
}

}  // namespace

BENCHMARK(passingKey);
BENCHMARK(replacedKey);
BENCHMARK(passingKeyWithCapture);
BENCHMARK(replacedKeyWithCapture);
BENCHMARK(engineDecisionAlone);
