// Ten million events through the road while the mapping list changes every 100,000: resident memory
// must stay where it was after warming up. Run once (it is a soak, not a timing).
#include "SimulatedRoad.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>

using namespace orvane;

namespace {

constexpr std::size_t soakEvents = 10'000'000;
constexpr std::size_t eventsPerList = 100'000;
constexpr std::size_t warmUpEvents = 1'000'000;
// Growth after warm-up beyond this fails the run; a leak of one byte per event would pass it eight times.
constexpr double allowedGrowthMiB = 1;

// VmRSS from /proc/self/status, in MiB; 0 where there is no such file.
double residentMiB() {
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly)) return 0;
    for (QByteArray line = status.readLine(); !line.isEmpty(); line = status.readLine())
        if (line.startsWith("VmRSS:")) return line.mid(6).trimmed().split(' ').front().toDouble() / 1024;
    return 0;
}

PlatformEvent keyEvent(std::uint32_t type, KeyCode key, std::uint64_t flags = 0) {
    PlatformEvent event;
    event.type = type;
    event.keyCode = static_cast<std::uint16_t>(rawValue(key));
    event.flags = flags;
    return event;
}

PlatformEvent playPause(bool down) {
    PlatformEvent event;
    event.type = TapEventType::systemDefined;
    event.systemDefined = SystemDefinedFields{8, (std::int64_t{rawValue(SystemKeyID::playPause)} << 16) | (down ? 0xA00 : 0xB00)};
    return event;
}

// The list in force after `changes` changes: A alternately a key, a combination and blocked; every
// other list also maps Play/Pause and Caps Lock (which takes the HID tool).
std::vector<KeyMapping> listAfter(std::size_t changes) {
    const TargetAction targets[] = {TargetAction::key(KeyCode::b), TargetAction::combination(KeyCode::space, {.command = true}),
                                    TargetAction::block()};
    auto list = hundredMappings(targets[changes % 3]);
    if (changes % 2 == 1) {
        const SourceKey playPauseKey = SourceKey::system(SystemKeyID::playPause), capsLockKey = SourceKey::regular(KeyCode::capsLock);
        list.insert(list.begin(), KeyMapping{Uuid::random(), playPauseKey, TargetAction::key(KeyCode::f8), true});
        list.insert(list.begin(), KeyMapping{Uuid::random(), capsLockKey, TargetAction::key(KeyCode::escape), true});
    }
    return list;
}

void tenMillionEventsWithTheListChanging(benchmark::State& state) {
    Road road(false);
    const PlatformEvent cycle[] = {
        keyEvent(TapEventType::keyDown, KeyCode::a),         keyEvent(TapEventType::keyUp, KeyCode::a),
        keyEvent(TapEventType::keyDown, KeyCode::z),         keyEvent(TapEventType::keyUp, KeyCode::z),
        keyEvent(TapEventType::flagsChanged, KeyCode::rightCommand, EventFlag::command),
        keyEvent(TapEventType::flagsChanged, KeyCode::rightCommand), playPause(true), playPause(false),
    };
    const double startMiB = residentMiB();
    double warmMiB = 0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < soakEvents; ++i) {
            if (i % eventsPerList == 0) {
                road.store->setMappings(listAfter(i / eventsPerList));
                // What the event loop does between keys: the Caps Lock decision's result comes back.
                road.store->waitForCapsLockDecisions();
                QCoreApplication::processEvents();
                road.quietLines.clear();  // the diagnostics' record is the harness's, not the road's
            }
            if (i == warmUpEvents) warmMiB = residentMiB();
            road.events.inject(cycle[i % std::size(cycle)]);
        }
    }
    const double endMiB = residentMiB();
    state.counters["events"] = static_cast<double>(soakEvents);
    state.counters["delivered"] = static_cast<double>(road.delivered);
    state.counters["rss_start_MiB"] = startMiB;
    state.counters["rss_warm_MiB"] = warmMiB;
    state.counters["rss_end_MiB"] = endMiB;
    if (endMiB - warmMiB > allowedGrowthMiB) state.SkipWithError("resident memory grew after warm-up");
}

}  // namespace

BENCHMARK(tenMillionEventsWithTheListChanging)->Iterations(1)->Repetitions(1)->Unit(benchmark::kSecond)->UseRealTime();
