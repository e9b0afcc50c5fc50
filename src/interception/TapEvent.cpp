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
            const MediaKeyState media = decodeMediaKeyData1(data1);
            event.auxKeyType = media.keyType;
            event.systemKey = systemKeyFromRaw(media.keyType);
            event.isDown = media.isDown;  // the repeat bit is of no concern to the readers
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
