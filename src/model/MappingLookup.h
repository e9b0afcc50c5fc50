// What the remapping engine reads of the mapping store, afresh for every event.
#pragma once

#include "model/Mapping.h"

namespace orvane {

// Returned pointers stay valid until the list next changes; callers use them at once.
class MappingLookup {
public:
    virtual ~MappingLookup() = default;

    // First enabled mapping, in list order, whose source is that very key.
    virtual const KeyMapping* mappingForKey(KeyCode key) const = 0;
    virtual const KeyMapping* mappingForSystemKey(SystemKeyID key) const = 0;
    // The enabled Caps Lock mapping while Caps Lock reaches us as F18 from the HID layer; otherwise none.
    virtual const KeyMapping* capsLockMappingViaF18() const = 0;
    virtual bool isCapsLockHIDRemapped() const = 0;
};

}  // namespace orvane
