#include "interception/EventCapturer.h"

#include "interception/EventTapManager.h"
#include "platform/Diagnostics.h"
#include "store/MappingStore.h"

namespace orvane {

std::string hexWord(std::uint64_t value) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string reversed;
    do {
        reversed.push_back(digits[value & 0xF]);
        value >>= 4;
    } while (value != 0);
    return "0x" + std::string(reversed.rbegin(), reversed.rend());
}

EventCapturer::EventCapturer(EventSystem& events, const MappingStore& store, const EventTapManager& manager,
                             std::function<void(const DebugEvent&)> onEvent, std::function<bool()> filterNoise)
    : events_(events), store_(store), manager_(manager), onEvent_(std::move(onEvent)), filterNoise_(std::move(filterNoise)) {}

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

std::string EventCapturer::describeTarget(const TargetAction& target) {
    switch (target.kind()) {
    case TargetAction::Kind::block: return "Block";
    case TargetAction::Kind::key: return std::string(displayName(target.keyCode()));
    case TargetAction::Kind::combination:
        if (target.modifiers().isEmpty()) return std::string(displayName(target.keyCode()));
        return target.modifiers().modifierSymbols() + std::string(symbol(target.keyCode()));
    }
    return {};
}

std::optional<std::string> EventCapturer::interceptionInfoForKey(KeyCode key) const {
    if (key == KeyCode::capsLock) {
        if (const KeyMapping* m = store_.capsLockMapping())
            return std::string("\u26A1 ") + (store_.isCapsLockHIDRemapped() ? "HID" : "Tap") + " \u2192 " + describeTarget(m->targetAction);
    }
    if (const KeyMapping* m = store_.mappingForKey(key)) return "\u26A1 Tap \u2192 " + describeTarget(m->targetAction);
    return std::nullopt;
}

void EventCapturer::handleCapturedEvent(std::uint32_t type, const PlatformEvent* event) {
    // Events we posted ourselves are not the keyboard's.
    if (events_.integerField(event, EventField::eventSourceUserData) == syntheticEventMarker) return;
    DebugEvent record;
    switch (type) {
    case 10: record.eventTypeName = "keyDown"; break;
    case 11: record.eventTypeName = "keyUp"; break;
    case 12: record.eventTypeName = "flagsChanged"; break;
    case 14: record.eventTypeName = "systemDefined"; break;
    default: record.eventTypeName = "unknown"; break;
    }

    if (type == 14) {
        if (const auto fields = events_.systemDefinedFields(event)) {
            record.subtype = fields->subtype;
            if (filterNoise_() && noiseSubtypes.count(fields->subtype)) return;
            record.data1 = fields->data1;
            record.data1Hex = hexWord(static_cast<std::uint64_t>(fields->data1));
            if (fields->subtype == auxControlButtonsSubtype) {
                if (const auto id = systemKeyFromRaw((fields->data1 >> 16) & 0xFF)) {
                    record.decodedInfo = "\u2192 " + std::string(displayName(*id));
                    if (const KeyMapping* m = store_.mappingForSystemKey(*id))
                        record.interceptionInfo = "\u26A1 Tap \u2192 " + describeTarget(m->targetAction);
                }
            }
        }
    } else {
        int keycode = static_cast<int>(events_.integerField(event, EventField::keyboardEventKeycode));
        const std::uint64_t flags = events_.flags(event);
        if (type == 12 && filterNoise_() && keycode == 0 && flags == 0) return;
        if (auto key = keyCodeFromRaw(keycode)) {
            // F18 is what Caps Lock produces while the HID layer routes it through F18.
            if (*key == KeyCode::f18 && store_.isCapsLockHIDRemapped() && !store_.isCapsLockDirectHID()) {
                key = KeyCode::capsLock;
                keycode = rawValue(KeyCode::capsLock);
            }
            record.decodedInfo = "\u2192 " + std::string(displayName(*key));
            record.interceptionInfo = interceptionInfoForKey(*key);
        }
        record.keycode = keycode;
        record.flags = flags;
    }

    record.id = Uuid::random();
    record.timestamp = std::chrono::system_clock::now();
    record.eventType = static_cast<int>(type);
    record.isInterceptionActive = manager_.isRunning();
    onEvent_(record);
}

}  // namespace orvane
