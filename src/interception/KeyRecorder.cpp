#include "interception/KeyRecorder.h"

#include "interception/TapEventReading.h"
#include "platform/Diagnostics.h"

#include <algorithm>

namespace orvane {
namespace {

void print(const std::string& line) { diagnostics::printLine(line); }

// A press of a recordable media key; releases and everything else give none.
std::optional<SystemKeyID> recordableSystemKeyPress(const TapEvent& event) {
    if (!event.systemKey || !event.isDown.value_or(false)) return std::nullopt;
    const int keyType = rawValue(*event.systemKey);
    const auto& recordable = KeyRecorder::recordableSystemKeyTypes;
    if (std::find(std::begin(recordable), std::end(recordable), keyType) == std::end(recordable)) return std::nullopt;
    return event.systemKey;
}

}  // namespace

KeyRecorder::KeyRecorder(EventSystem& events, bool allowModifiers, bool wasMainTapRunning,
                         std::function<void(const RecordedKey&)> onKeyRecorded)
    : events_(events), allowModifiers_(allowModifiers), onKeyRecorded_(std::move(onKeyRecorded)), wasMainTapRunning_(wasMainTapRunning) {}

void KeyRecorder::start() {
    switch (tap_.install(events_, TapOptions::activeFilter, &tapCallback, this, /*keepTapWithoutSource=*/true)) {
    case InstalledTap::Result::tapFailed:
        print("KeyRecorder: Failed to create event tap - check Accessibility permission");
        return;
    case InstalledTap::Result::sourceFailed: return;  // the tap stays unenabled, silently
    case InstalledTap::Result::installed: print("KeyRecorder: Event tap started successfully"); return;
    }
}

void KeyRecorder::stop() { tap_.uninstall(events_); }

PlatformEvent* KeyRecorder::tapCallback(std::uint32_t type, PlatformEvent* event, void* userInfo) {
    if (!userInfo) return event;
    return static_cast<KeyRecorder*>(userInfo)->handleRecorderEvent(type, event) ? event : nullptr;
}

bool KeyRecorder::handleRecorderEvent(std::uint32_t type, const PlatformEvent* platformEvent) {
    print("KeyRecorder: Received event type: " + std::to_string(type));
    if (type == TapEventType::tapDisabledByTimeout || type == TapEventType::tapDisabledByUserInput) return true;
    const TapEvent event = readTapEvent(events_, type, platformEvent);

    if (type == TapEventType::systemDefined) {
        print("KeyRecorder: Got system-defined event");
        const auto id = recordableSystemKeyPress(event);
        if (!id) return true;
        const RecordedKey recorded{SourceKey::system(*id), {}};
        print("KeyRecorder: Decoded system key: " + recorded.sourceKey.displayName());
        onKeyRecorded_(recorded);
        return false;
    }

    if (type == TapEventType::flagsChanged) {
        if (allowModifiers_) return true;  // the modifiers come with the next key-down instead
        if (!event.key || !isModifierKey(*event.key)) return true;
        print("KeyRecorder: Decoded modifier: " + std::string(displayName(*event.key)));
        if (*event.key == KeyCode::function) return false;  // Fn alone is no mapping source; keep recording
        onKeyRecorded_(RecordedKey{SourceKey::regular(*event.key), {}});
        return false;
    }

    if (type == TapEventType::keyDown) {
        print("KeyRecorder: Got keyDown event");
        if (!event.key) return true;
        const Modifiers modifiers = allowModifiers_ ? Modifiers::fromEventFlags(event.flags) : Modifiers{};
        const RecordedKey recorded{SourceKey::regular(*event.key), modifiers};
        print("KeyRecorder: Decoded key: " + recorded.sourceKey.displayName());
        onKeyRecorded_(recorded);
        return false;
    }
    return true;  // key-ups always go on, so the recorded key's release reaches the system
}

}  // namespace orvane
