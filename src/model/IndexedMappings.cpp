#include "model/IndexedMappings.h"

namespace orvane {

void IndexedMappings::assign(std::vector<KeyMapping> mappings) {
    mappings_ = std::move(mappings);
    index_ = MappingIndex(mappings_);
}

void IndexedMappings::setCapsLockHIDState(bool remapped, bool direct) {
    capsLockRemapped_ = remapped;
    capsLockDirect_ = direct;
}

}  // namespace orvane
