#include "OutputText.h"

#include "interception/TapEvent.h"
#include "ui/debugger/DebugEventWords.h"

namespace orvane::sim {

using debugwords::hexWord;

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
    const TapEvent& event = record.event;
    std::string text = "capture: " + debugwords::eventTypeName(event.type);
    if (event.subtype) text += " subtype=" + std::to_string(*event.subtype) + " data1=" + *debugwords::data1Hex(record);
    if (debugwords::hasKeyFields(record)) text += " keycode=" + std::to_string(event.keyCode) + " flags=" + hexWord(event.flags);
    if (const auto decoded = debugwords::decodedInfo(record)) text += " decoded=\"" + *decoded + "\"";
    if (const auto interception = debugwords::interceptionInfo(record)) text += " interception=\"" + *interception + "\"";
    if (const auto role = debugwords::dualRoleInfo(record)) text += " role=\"" + *role + "\"";
    text += record.isInterceptionActive ? " active=true" : " active=false";
    return text;
}

}  // namespace orvane::sim
