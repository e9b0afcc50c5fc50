// Constant-time "first enabled mapping of this key" over a mapping list.
#pragma once

#include "model/Mapping.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

namespace orvane {

// Built from a list, it answers the same first-match positions as a scan of that list.
// It holds positions, not mappings: rebuild it whenever the list changes.
class MappingIndex {
public:
    MappingIndex();
    explicit MappingIndex(std::span<const KeyMapping> mappings);

    std::optional<std::size_t> firstEnabled(KeyCode key) const { return position(regular_[static_cast<std::size_t>(rawValue(key))]); }
    std::optional<std::size_t> firstEnabled(SystemKeyID key) const { return position(system_[static_cast<std::size_t>(rawValue(key))]); }

private:
    static constexpr std::int32_t none = -1;
    static std::optional<std::size_t> position(std::int32_t slot) {
        if (slot == none) return std::nullopt;
        return static_cast<std::size_t>(slot);
    }

    // Indexed by raw value; the highest key code is 179 and the highest system key type 131.
    std::array<std::int32_t, 180> regular_;
    std::array<std::int32_t, 132> system_;
};

}  // namespace orvane
