// A session keyboard tap together with its run-loop source: created, put in the run loop, taken out.
#pragma once

#include "interception/TapEvent.h"
#include "platform/EventSystem.h"

namespace orvane {

// Every tap of ours sits at the session level, in front of the taps already there, and sees
// key down, key up, flags changed and system-defined events.
class InstalledTap {
public:
    static constexpr std::uint64_t eventMask = eventMaskBit(TapEventType::keyDown) | eventMaskBit(TapEventType::keyUp) |
                                               eventMaskBit(TapEventType::flagsChanged) | eventMaskBit(TapEventType::systemDefined);

    enum class Result { installed, tapFailed, sourceFailed };

    // Creates the tap and its source; with both, adds the source to the current thread's run loop
    // and enables the tap. When only the source fails, the tap is kept (disabled) if keepTapWithoutSource,
    // otherwise released.
    Result install(EventSystem& events, TapOptions options, TapCallback callback, void* userInfo, bool keepTapWithoutSource);
    // Disables the tap, takes the source out of the run loop and releases both; nothing when empty.
    void uninstall(EventSystem& events);

    const EventSystem::TapHandle& tap() const { return tap_; }

private:
    EventSystem::TapHandle tap_;
    EventSystem::SourceHandle source_;
};

}  // namespace orvane
