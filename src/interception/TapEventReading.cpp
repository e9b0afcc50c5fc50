#include "interception/TapEventReading.h"

namespace orvane {

TapEvent readTapEvent(const EventSystem& events, std::uint32_t type, const PlatformEvent* event) {
    std::optional<std::int16_t> subtype;
    std::int64_t data1 = 0;
    if (type == TapEventType::systemDefined) {
        if (const auto fields = events.systemDefinedFields(event)) {
            subtype = fields->subtype;
            data1 = fields->data1;
        }
    }
    TapEvent decoded = TapEvent::decode(type, static_cast<std::uint16_t>(events.integerField(event, EventField::keyboardEventKeycode)),
                                        events.flags(event), events.integerField(event, EventField::eventSourceUserData), subtype, data1);
    decoded.timestamp = events.timestamp(event);
    return decoded;
}

}  // namespace orvane
