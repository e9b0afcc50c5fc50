// The whole interception road through the simulated system: main tap, engine, posting, re-entry, delivery.
#include "SimulatedRoad.h"

#include <benchmark/benchmark.h>

using namespace orvane;

namespace {

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
    RemapEngine engine(*road.store);
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
