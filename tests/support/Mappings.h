// Mappings with fresh ids, one of each kind, and the ids of a list, for tests.
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
// A → B, F1 → ⇧⌘K, Q blocked, Volume Up → F13.
inline std::vector<KeyMapping> oneOfEachKind() {
    return {mapping(KeyCode::a, TargetAction::key(KeyCode::b)),
            mapping(KeyCode::f1, TargetAction::combination(KeyCode::k, {.command = true, .shift = true})),
            mapping(KeyCode::q, TargetAction::block()),
            mapping(SourceKey::system(SystemKeyID::volumeUp), TargetAction::key(KeyCode::f13))};
}
inline std::vector<Uuid> idsOf(const std::vector<KeyMapping>& list) {
    std::vector<Uuid> ids;
    for (const auto& m : list) ids.push_back(m.id);
    return ids;
}

}  // namespace orvane::testing
