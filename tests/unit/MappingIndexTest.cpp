// The index must give the same first-match answers as a scan of the list, for any list.
#include "model/IndexedMappings.h"

#include <gtest/gtest.h>

#include <random>

using namespace orvane;

namespace {

const KeyMapping* scan(const std::vector<KeyMapping>& list, SourceKey source) {
    for (const auto& m : list)
        if (m.isEnabled && m.sourceKey == source) return &m;
    return nullptr;
}

}  // namespace

TEST(MappingIndex, agreesWithALinearScanOnRandomLists) {
    std::mt19937 random(7);
    const auto keys = allKeyCodes();
    const auto systemKeys = allSystemKeys();
    // Few distinct sources so that duplicates and disabled entries ahead of enabled ones are common.
    const std::vector<SourceKey> sources{SourceKey::regular(KeyCode::a), SourceKey::regular(KeyCode::capsLock),
                                         SourceKey::regular(keys.back()), SourceKey::regular(KeyCode::globe),
                                         SourceKey::system(SystemKeyID::volumeUp), SourceKey::system(SystemKeyID::launchpad)};
    for (int round = 0; round < 300; ++round) {
        std::vector<KeyMapping> list(std::uniform_int_distribution<int>(0, 20)(random));
        for (auto& m : list) {
            m.id = Uuid::random();
            m.sourceKey = sources[std::uniform_int_distribution<std::size_t>(0, sources.size() - 1)(random)];
            m.isEnabled = std::bernoulli_distribution(0.6)(random);
        }
        IndexedMappings indexed(list);
        // The scan's answer, as the same position in the index's own copy of the list.
        const auto expected = [&](SourceKey source) {
            const KeyMapping* found = scan(list, source);
            return found ? &indexed.list()[static_cast<std::size_t>(found - list.data())] : nullptr;
        };
        for (const KeyCode k : keys) ASSERT_EQ(indexed.mappingForKey(k), expected(SourceKey::regular(k)));
        for (const SystemKeyID k : systemKeys) ASSERT_EQ(indexed.mappingForSystemKey(k), expected(SourceKey::system(k)));
    }
}

