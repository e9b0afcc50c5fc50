#include "interception/KeyRecorder.h"

#include "interception/EventTapManager.h"
#include "platform/Diagnostics.h"

#include <algorithm>

namespace orvane {
namespace {

void print(const std::string& line) { diagnostics::printLine(line); }

// A press of a recordable media key; releases and everything else give none.
std::optional<SystemKeyID> decodeSystemKey(const TapEvent& event) {
    if (event.subtype != auxControlButtonsSubtype) return std::nullopt;
    if ((event.data1 & 0x100) != 0) return std::nullopt;
    const auto keyType = static_cast<int>((event.data1 >> 16) & 0xFF);
    if (std::find(std::begin(KeyRecorder::recordableSystemKeyTypes), std::end(KeyRecorder::recordableSystemKeyTypes), keyType) ==
        std::end(KeyRecorder::recordableSystemKeyTypes))
        return std::nullopt;
    return systemKeyFromRaw(keyType);
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
        const auto id = decodeSystemKey(event);
        if (!id) return true;
        const RecordedKey recorded{SourceKey::system(*id), {}};
        print("KeyRecorder: Decoded system key: " + recorded.sourceKey.displayName());
        onKeyRecorded_(recorded);
        return false;
    }

    if (type == TapEventType::flagsChanged) {
        if (allowModifiers_) return true;  // the modifiers come with the next key-down instead
        const auto key = keyCodeFromRaw(event.keyCode);
        if (!key || !isModifierKey(*key)) return true;
        print("KeyRecorder: Decoded modifier: " + std::string(displayName(*key)));
        if (*key == KeyCode::function) return false;  // Fn alone is no mapping source; keep recording
        onKeyRecorded_(RecordedKey{SourceKey::regular(*key), {}});
        return false;
    }

    if (type == TapEventType::keyDown) {
        print("KeyRecorder: Got keyDown event");
        const auto key = keyCodeFromRaw(event.keyCode);
        if (!key) return true;
        Modifiers modifiers;
        if (allowModifiers_) {
            modifiers.command = (event.flags & EventFlag::command) != 0;
            modifiers.option = (event.flags & EventFlag::alternate) != 0;
            modifiers.control = (event.flags & EventFlag::control) != 0;
            modifiers.shift = (event.flags & EventFlag::shift) != 0;
        }
        const RecordedKey recorded{SourceKey::regular(*key), modifiers};
        print("KeyRecorder: Decoded key: " + recorded.sourceKey.displayName());
        onKeyRecorded_(recorded);
        return false;
    }
    return true;  // key-ups always go on, so the recorded key's release reaches the system
}

}  // namespace orvane
