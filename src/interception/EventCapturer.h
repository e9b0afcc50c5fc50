// A listen-only session tap that turns every key event into a DebugEvent for the debugger.
#pragma once

#include "interception/DebugEvent.h"
#include "interception/InstalledTap.h"
#include "model/MappingLookup.h"
#include "platform/EventSystem.h"

#include <functional>
#include <set>

namespace orvane {

class EventTapManager;

class EventCapturer {
public:
    // System-defined subtypes the noise filter hides.
    static inline const std::set<int> noiseSubtypes{7, 18, 19, 211};

    // Creates no tap yet. filterNoise is asked afresh for every event.
    EventCapturer(EventSystem& events, const MappingLookup& mappings, const EventTapManager& manager,
                  std::function<void(const DebugEvent&)> onEvent, std::function<bool()> filterNoise);
    ~EventCapturer();

    EventCapturer(const EventCapturer&) = delete;
    EventCapturer& operator=(const EventCapturer&) = delete;

    // Failure is only printed.
    void start();
    void stop();

    // The tap callback's body; calls onEvent synchronously unless the event is ignored.
    void handleCapturedEvent(std::uint32_t type, const PlatformEvent* event);

private:
    static PlatformEvent* tapCallback(std::uint32_t type, PlatformEvent* event, void* userInfo);
    bool isNoise(const TapEvent& event) const;
    void findMapping(DebugEvent& record) const;

    EventSystem& events_;
    const MappingLookup& mappings_;
    const EventTapManager& manager_;
    InstalledTap tap_;
    std::function<void(const DebugEvent&)> onEvent_;
    std::function<bool()> filterNoise_;
};

}  // namespace orvane
