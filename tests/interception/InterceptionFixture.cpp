#include "InterceptionFixture.h"

#include "interception/DebugEvent.h"

namespace orvane::testing {

std::string describe(const PlatformEvent& event) {
    std::string text;
    switch (event.type) {
    case 10: text = "keyDown " + std::to_string(event.keyCode) + " flags=" + hexWord(event.flags); break;
    case 11: text = "keyUp " + std::to_string(event.keyCode) + " flags=" + hexWord(event.flags); break;
    case 12: text = "flagsChanged " + std::to_string(event.keyCode) + " flags=" + hexWord(event.flags); break;
    case 14:
        text = "systemDefined";
        if (event.systemDefined)
            text += " subtype=" + std::to_string(event.systemDefined->subtype) + " data1=" +
                    hexWord(static_cast<std::uint64_t>(event.systemDefined->data1));
        break;
    default: text = "event " + std::to_string(event.type); break;
    }
    if (event.userData == syntheticEventMarker) text += " synthetic";
    return text;
}

std::vector<std::string> describe(const std::vector<PlatformEvent>& events) {
    std::vector<std::string> texts;
    for (const auto& event : events) texts.push_back(describe(event));
    return texts;
}

}  // namespace orvane::testing
