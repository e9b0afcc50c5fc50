// handleEvent per decision kind over lists of 1, 10, 100 and 1000 mappings, the looked-up one last.
#include "interception/RemapEngine.h"
#include "model/IndexedMappings.h"

#include <benchmark/benchmark.h>

using namespace orvane;

namespace {

// Filler mappings never match the benchmarked events; the mapping under test comes last.
IndexedMappings listEndingWith(std::size_t size, KeyMapping last) {
    std::vector<KeyMapping> list;
    list.reserve(size);
    const auto keys = allKeyCodes();
    for (std::size_t i = 0; list.size() + 1 < size; ++i) {
        const KeyCode source = keys[i % keys.size()];
        // Enabled filler on keys the events below never use, disabled filler on the key under test.
        const bool underTest = last.sourceKey == SourceKey::regular(source) || source == KeyCode::z;
        list.push_back({Uuid::random(), SourceKey::regular(source), TargetAction::key(KeyCode::x), !underTest});
    }
    list.push_back(last);
    return IndexedMappings(std::move(list));
}

TapEvent keyEvent(std::uint32_t type, KeyCode key, std::uint64_t flags = 0) {
    return TapEvent::decode(type, static_cast<std::uint16_t>(rawValue(key)), flags, 0);
}

void runDecision(benchmark::State& state, KeyMapping last, TapEvent event) {
    const IndexedMappings lookup = listEndingWith(static_cast<std::size_t>(state.range(0)), last);
    RemapEngine engine(lookup);
    for (auto _ : state) {
        benchmark::DoNotOptimize(event);
        TapDecision decision = engine.handleEvent(event);
        benchmark::DoNotOptimize(decision);
    }
}

void noMapping(benchmark::State& state) {
    runDecision(state, {Uuid::random(), SourceKey::regular(KeyCode::q), TargetAction::key(KeyCode::w), true},
                keyEvent(TapEventType::keyDown, KeyCode::z));
}
void keyToKey(benchmark::State& state) {
    runDecision(state, {Uuid::random(), SourceKey::regular(KeyCode::a), TargetAction::key(KeyCode::b), true},
                keyEvent(TapEventType::keyDown, KeyCode::a));
}
void combination(benchmark::State& state) {
    runDecision(state, {Uuid::random(), SourceKey::regular(KeyCode::a), TargetAction::combination(KeyCode::b, {true, false, false, true}), true},
                keyEvent(TapEventType::keyDown, KeyCode::a));
}
void blocked(benchmark::State& state) {
    runDecision(state, {Uuid::random(), SourceKey::regular(KeyCode::a), TargetAction::block(), true}, keyEvent(TapEventType::keyDown, KeyCode::a));
}
void systemKey(benchmark::State& state) {
    const TapEvent event = TapEvent::decode(TapEventType::systemDefined, 0, 0, 0, auxControlButtonsSubtype, 0x00100A00);  // Play/Pause pressed
    runDecision(state, {Uuid::random(), SourceKey::system(SystemKeyID::playPause), TargetAction::key(KeyCode::f13), true}, event);
}
void flagsChanged(benchmark::State& state) {
    runDecision(state, {Uuid::random(), SourceKey::regular(KeyCode::rightCommand), TargetAction::key(KeyCode::escape), true},
                keyEvent(TapEventType::flagsChanged, KeyCode::rightCommand, EventFlag::command));
}

}  // namespace

BENCHMARK(noMapping)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(keyToKey)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(combination)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(blocked)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(systemKey)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(flagsChanged)->Arg(1)->Arg(10)->Arg(100)->Arg(1000);
