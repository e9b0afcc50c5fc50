#include "interception/TapEvent.h"

namespace orvane {

TapEvent TapEvent::decode(std::uint32_t type, std::uint16_t keyCode, std::uint64_t flags, std::int64_t userData,
                          std::optional<std::int16_t> subtype, std::int64_t data1) {
    TapEvent event;
    event.type = type;
    event.keyCode = keyCode;
    event.flags = flags;
    event.subtype = subtype;
    event.data1 = data1;
    event.isSynthetic = userData == syntheticEventMarker;
    if (type == TapEventType::systemDefined) {
        if (subtype == auxControlButtonsSubtype) {
            event.auxKeyType = static_cast<int>((data1 >> 16) & 0xFF);
            event.systemKey = systemKeyFromRaw(*event.auxKeyType);
            // The key-state byte is 0x0A on press and 0x0B on release; the repeat bit is ignored.
            event.isDown = (data1 & 0x100) == 0;
        }
        return event;
    }
    event.key = keyCodeFromRaw(keyCode);
    if (type == TapEventType::keyDown || type == TapEventType::keyUp) {
        event.isDown = type == TapEventType::keyDown;
    } else if (type == TapEventType::flagsChanged && event.key) {
        // A modifier's own flag after the change: left and right keys share it, so releasing one
        // of two held Command keys still reads as a press.
        if (const auto mask = modifierFlagMask(*event.key)) event.isDown = (flags & *mask) != 0;
    }
    return event;
}

}  // namespace orvane
