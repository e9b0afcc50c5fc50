// A short-lived tap of its own that captures one key press and swallows it.
#pragma once

#include "interception/InstalledTap.h"
#include "model/Mapping.h"
#include "platform/EventSystem.h"

#include <functional>

namespace orvane {

class KeyRecorder {
public:
    // NX key types accepted from system-defined events; of the system keys only Mute lies here.
    static constexpr int recordableSystemKeyTypes[] = {7, 8, 9, 10, 11, 12};

    KeyRecorder(EventSystem& events, bool allowModifiers, bool wasMainTapRunning, std::function<void(const RecordedKey&)> onKeyRecorded);
    // Releases its handles; the owner calls stop() first.
    ~KeyRecorder() = default;

    KeyRecorder(const KeyRecorder&) = delete;
    KeyRecorder& operator=(const KeyRecorder&) = delete;

    void start();
    // Idempotent.
    void stop();

    bool allowModifiers() const { return allowModifiers_; }
    bool wasMainTapRunning() const { return wasMainTapRunning_; }

    // The tap's logic: true to let the event go on, false to swallow it. May report one key.
    bool handleRecorderEvent(std::uint32_t type, const PlatformEvent* event);

private:
    static PlatformEvent* tapCallback(std::uint32_t type, PlatformEvent* event, void* userInfo);

    EventSystem& events_;
    InstalledTap tap_;
    const bool allowModifiers_;
    std::function<void(const RecordedKey&)> onKeyRecorded_;
    const bool wasMainTapRunning_;
};

}  // namespace orvane
