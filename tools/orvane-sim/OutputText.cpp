#include "OutputText.h"

#include "interception/TapEvent.h"

namespace orvane::sim {

std::string describeEvent(const PlatformEvent& event) {
    std::string text;
    switch (event.type) {
    case TapEventType::keyDown: text = "keyDown "; break;
    case TapEventType::keyUp: text = "keyUp "; break;
    case TapEventType::flagsChanged: text = "flagsChanged "; break;
    case TapEventType::systemDefined:
        text = "systemDefined";
        if (event.systemDefined)
            text += " subtype=" + std::to_string(event.systemDefined->subtype) +
                    " data1=" + hexWord(static_cast<std::uint64_t>(event.systemDefined->data1));
        break;
    default: text = "event " + std::to_string(event.type); break;
    }
    if (event.type >= TapEventType::keyDown && event.type <= TapEventType::flagsChanged)
        text += std::to_string(event.keyCode) + " flags=" + hexWord(event.flags);
    if (event.userData == syntheticEventMarker) text += " synthetic";
    return text;
}

std::string describeDelivered(const std::vector<PlatformEvent>& events) {
    if (events.empty()) return "-";
    std::string text;
    for (const auto& event : events) {
        if (!text.empty()) text += " ; ";
        text += describeEvent(event);
    }
    return text;
}

std::string describeCapture(const DebugEvent& record) {
    std::string text = "capture: " + record.eventTypeName;
    if (record.subtype) text += " subtype=" + std::to_string(*record.subtype);
    if (record.data1Hex) text += " data1=" + *record.data1Hex;
    if (record.keycode) text += " keycode=" + std::to_string(*record.keycode);
    if (record.flags) text += " flags=" + hexWord(*record.flags);
    if (record.decodedInfo) text += " decoded=\"" + *record.decodedInfo + "\"";
    if (record.interceptionInfo) text += " interception=\"" + *record.interceptionInfo + "\"";
    text += record.isInterceptionActive ? " active=true" : " active=false";
    return text;
}

}  // namespace orvane::sim
