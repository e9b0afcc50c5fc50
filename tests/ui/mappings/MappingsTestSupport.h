// Mapping builders for the configuration window's tests, over the UI harness.
#pragma once

#include "UiHarness.h"
#include "ui/mappings/MappingListModel.h"

#include <gtest/gtest.h>

namespace orvane::testing {

inline KeyMapping mapping(SourceKey source, TargetAction target, bool enabled = true) { return {Uuid::random(), source, target, enabled}; }
inline KeyMapping mapping(KeyCode source, TargetAction target, bool enabled = true) {
    return mapping(SourceKey::regular(source), target, enabled);
}
inline QString idText(const KeyMapping& m) { return QString::fromStdString(m.id.toString()); }
inline std::vector<Uuid> idsOf(const std::vector<KeyMapping>& list) {
    std::vector<Uuid> ids;
    for (const auto& m : list) ids.push_back(m.id);
    return ids;
}

}  // namespace orvane::testing
