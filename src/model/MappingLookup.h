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
    // Caps Lock is remapped in the HID layer (to its target key, or to F18)...
    virtual bool isCapsLockHIDRemapped() const = 0;
    // ... straight to its target key rather than through F18.
    virtual bool isCapsLockDirectHID() const = 0;

    // The first enabled Caps Lock mapping, whatever the HID layer does.
    const KeyMapping* capsLockMapping() const { return mappingForKey(KeyCode::capsLock); }
    // While the HID layer routes Caps Lock through F18, every F18 event is a Caps Lock press.
    bool capsLockArrivesAsF18() const { return isCapsLockHIDRemapped() && !isCapsLockDirectHID(); }
    // The enabled Caps Lock mapping while Caps Lock arrives as F18; otherwise none.
    const KeyMapping* capsLockMappingViaF18() const { return capsLockArrivesAsF18() ? capsLockMapping() : nullptr; }
};

}  // namespace orvane
