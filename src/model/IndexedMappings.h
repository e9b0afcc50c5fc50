// A mapping list with its index and Caps Lock flags: the engine's lookups over plain data.
#pragma once

#include "model/MappingIndex.h"
#include "model/MappingLookup.h"

#include <vector>

namespace orvane {

class IndexedMappings final : public MappingLookup {
public:
    IndexedMappings() = default;
    explicit IndexedMappings(std::vector<KeyMapping> mappings) { assign(std::move(mappings)); }

    void assign(std::vector<KeyMapping> mappings);
    const std::vector<KeyMapping>& list() const { return mappings_; }

    void setCapsLockHIDState(bool remapped, bool direct);

    const KeyMapping* mappingForKey(KeyCode key) const override { return at(index_.firstEnabled(key)); }
    const KeyMapping* mappingForSystemKey(SystemKeyID key) const override { return at(index_.firstEnabled(key)); }
    bool isCapsLockHIDRemapped() const override { return capsLockRemapped_; }
    bool isCapsLockDirectHID() const override { return capsLockDirect_; }

private:
    const KeyMapping* at(std::optional<std::size_t> position) const { return position ? &mappings_[*position] : nullptr; }

    std::vector<KeyMapping> mappings_;
    MappingIndex index_;
    bool capsLockRemapped_ = false;
    bool capsLockDirect_ = false;
};

}  // namespace orvane
