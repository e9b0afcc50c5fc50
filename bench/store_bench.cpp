// Store lookups, the in-memory cost of one change, and the settings write, at growing list sizes.
#include "model/IndexedMappings.h"
#include "model/MappingJson.h"
#include "store/MappingStore.h"

#include <benchmark/benchmark.h>

#include <QTemporaryDir>

using namespace orvane;

namespace {

std::vector<KeyMapping> listOf(std::size_t size) {
    std::vector<KeyMapping> list;
    const auto keys = allKeyCodes();
    for (std::size_t i = 0; i < size; ++i)
        list.push_back({Uuid::random(), SourceKey::regular(keys[(i + 1) % keys.size()]),
                        TargetAction::combination(KeyCode::b, {true, false, true, false}), true});
    list.back().sourceKey = SourceKey::regular(KeyCode::a);  // the looked-up key is last
    for (std::size_t i = 0; i + 1 < size; ++i)
        if (list[i].sourceKey == list.back().sourceKey) list[i].isEnabled = false;
    return list;
}

// A store over a throwaway settings file and a tool that does nothing, quietly.
struct StoreFixture {
    QTemporaryDir dir;
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    MappingStore store{*defaults, HIDUtil(QStringLiteral("/bin/true"))};
};

void storeLookup(benchmark::State& state) {
    StoreFixture fixture;
    fixture.store.setMappings(listOf(static_cast<std::size_t>(state.range(0))));
    // Through the interface the engine uses, as an opaque pointer, so the call stays virtual.
    const MappingLookup* lookup = &fixture.store;
    benchmark::DoNotOptimize(lookup);
    for (auto _ : state) {
        KeyCode key = KeyCode::a;
        benchmark::DoNotOptimize(key);
        benchmark::DoNotOptimize(lookup->mappingForKey(key));
    }
    fixture.store.waitForCapsLockDecisions();
}

// What the store does in memory for one change: encode the whole list and rebuild the index.
void changeInMemory(benchmark::State& state) {
    const auto list = listOf(static_cast<std::size_t>(state.range(0)));
    IndexedMappings table;
    for (auto _ : state) {
        table.assign(list);
        std::string json = encodeMappings(table.list());
        benchmark::DoNotOptimize(json);
    }
}

void settingsWriteWithSync(benchmark::State& state) {
    QTemporaryDir dir;
    auto defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    const std::string json = encodeMappings(listOf(static_cast<std::size_t>(state.range(0))));
    const QByteArray bytes = QByteArray::fromStdString(json);
    for (auto _ : state) benchmark::DoNotOptimize(defaults->setData(MappingStore::userDefaultsKey, bytes));
}

}  // namespace

BENCHMARK(storeLookup)->Arg(1)->Arg(100)->Arg(1000);
BENCHMARK(changeInMemory)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(settingsWriteWithSync)->Arg(1000)->Unit(benchmark::kMicrosecond);
