#include "interception/EventCapturer.h"

#include "interception/EventTapManager.h"
#include "interception/TapEventReading.h"
#include "platform/Diagnostics.h"

namespace orvane {

EventCapturer::EventCapturer(EventSystem& events, const MappingLookup& mappings, const EventTapManager& manager,
                             std::function<void(const DebugEvent&)> onEvent, std::function<bool()> filterNoise)
    : events_(events), mappings_(mappings), manager_(manager), onEvent_(std::move(onEvent)), filterNoise_(std::move(filterNoise)) {}

EventCapturer::~EventCapturer() = default;

void EventCapturer::start() {
    // A tap whose source cannot be made stays stored and disabled, silently.
    if (tap_.install(events_, TapOptions::listenOnly, &tapCallback, this, /*keepTapWithoutSource=*/true) ==
        InstalledTap::Result::tapFailed)
        diagnostics::printLine("DebugView: Failed to create event tap");
}

void EventCapturer::stop() { tap_.uninstall(events_); }

PlatformEvent* EventCapturer::tapCallback(std::uint32_t type, PlatformEvent* event, void* userInfo) {
    if (userInfo) static_cast<EventCapturer*>(userInfo)->handleCapturedEvent(type, event);
    return event;
}

// Background chatter of the system: some system-defined subtypes, and flag changes of no key that set nothing.
bool EventCapturer::isNoise(const TapEvent& event) const {
    if (event.type == TapEventType::systemDefined) return event.subtype && noiseSubtypes.count(*event.subtype) && filterNoise_();
    return event.type == TapEventType::flagsChanged && event.keyCode == 0 && event.flags == 0 && filterNoise_();
}

void EventCapturer::findMapping(DebugEvent& record) const {
    TapEvent& event = record.event;
    if (event.systemKey) {
        if (const KeyMapping* m = mappings_.mappingForSystemKey(*event.systemKey)) record.mapping = *m;
        return;
    }
    if (!event.key || event.type == TapEventType::systemDefined) return;
    if (*event.key == KeyCode::f18 && mappings_.capsLockArrivesAsF18()) {
        event.key = KeyCode::capsLock;
        event.keyCode = static_cast<std::uint16_t>(rawValue(KeyCode::capsLock));
    }
    if (const KeyMapping* m = mappings_.mappingForKey(*event.key)) {
        record.mapping = *m;
        record.isMappedInHIDLayer = *event.key == KeyCode::capsLock && mappings_.isCapsLockHIDRemapped();
    }
}

void EventCapturer::handleCapturedEvent(std::uint32_t type, const PlatformEvent* event) {
    DebugEvent record;
    record.event = readTapEvent(events_, type, event);
    // Events we posted ourselves are not the keyboard's.
    if (record.event.isSynthetic || isNoise(record.event)) return;
    // Asked before the main tap sees the event: this tap stands in front of it.
    record.dualRole = manager_.dualRoleOutcome(record.event);
    findMapping(record);
    record.id = Uuid::random();
    record.timestamp = std::chrono::system_clock::now();
    record.isInterceptionActive = manager_.isRunning();
    onEvent_(record);
}

}  // namespace orvane
