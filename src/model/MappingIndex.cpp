#include "model/MappingIndex.h"

namespace orvane {

MappingIndex::MappingIndex() {
    regular_.fill(none);
    system_.fill(none);
}

MappingIndex::MappingIndex(std::span<const KeyMapping> mappings) : MappingIndex() {
    // Walk backwards so that the earliest enabled mapping of each key is written last.
    for (std::size_t i = mappings.size(); i-- > 0;) {
        const KeyMapping& mapping = mappings[i];
        if (!mapping.isEnabled) continue;
        const auto table = mapping.sourceKey.isRegular() ? std::span<std::int32_t>(regular_) : std::span<std::int32_t>(system_);
        table[static_cast<std::size_t>(mapping.sourceKey.rawKeyValue())] = static_cast<std::int32_t>(i);
    }
}

}  // namespace orvane
