// Mappings with fresh ids, and the ids of a list, for tests.
#pragma once

#include "model/Mapping.h"

#include <vector>

namespace orvane::testing {

inline KeyMapping mapping(SourceKey source, TargetAction target, bool enabled = true) {
    return {Uuid::random(), source, target, enabled};
}
inline KeyMapping mapping(KeyCode source, TargetAction target, bool enabled = true) {
    return mapping(SourceKey::regular(source), target, enabled);
}
inline std::vector<Uuid> idsOf(const std::vector<KeyMapping>& list) {
    std::vector<Uuid> ids;
    for (const auto& m : list) ids.push_back(m.id);
    return ids;
}

}  // namespace orvane::testing
