// An in-process event system with Quartz's rules: taps in a chain, events injected and delivered.
#pragma once

#include "platform/sim/SimAccessibility.h"
#include "platform/tapchain/TapChain.h"

#include <vector>

namespace orvane {

class SimEventSystem final : public EventSystem {
public:
    // Tap creation fails while the process is not trusted.
    explicit SimEventSystem(SimAccessibility& accessibility);

    TapHandle createTap(TapLocation location, TapPlacement placement, TapOptions options, std::uint64_t eventMask,
                        TapCallback callback, void* userInfo) override;
    SourceHandle createRunLoopSource(const TapHandle& tap) override;
    void addToCurrentRunLoop(const SourceHandle& source) override;
    void removeFromCurrentRunLoop(const SourceHandle& source) override;
    void enableTap(const TapHandle& tap, bool enable) override;

    std::int64_t integerField(const PlatformEvent* event, EventField field) const override;
    std::uint64_t flags(const PlatformEvent* event) const override { return event->flags; }
    std::optional<SystemDefinedFields> systemDefinedFields(const PlatformEvent* event) const override { return event->systemDefined; }

    OwnedEvent createKeyboardEvent(std::uint16_t virtualKeyCode, bool keyDown) override;
    void setFlags(PlatformEvent* event, std::uint64_t flags) override { event->flags = flags; }
    void setIntegerField(PlatformEvent* event, EventField field, std::int64_t value) override;
    void postToHID(const PlatformEvent* event) override { chain_.enter(*event); }

    // ---- The simulation's own controls ----

    // An event from the keyboard. Returns once it (and whatever it made taps post) has travelled.
    void inject(const PlatformEvent& event) { chain_.enter(event); }
    // Everything delivered to applications so far, oldest first; taking it empties the record.
    std::vector<PlatformEvent> takeDelivered();
    // Instead of recording, hand each delivered event to this function (null: record again).
    void setOutput(TapChain::Output output);

    void disableBySystem(const TapHandle& tap, std::uint32_t notificationType);

    void setTapCreationFails(bool fails) { tapCreationFails_ = fails; }
    void setSourceCreationFails(bool fails) { sourceCreationFails_ = fails; }
    // The next `count` keyboard event creations fail; the ones after succeed.
    void failNextKeyboardEventCreations(int count) { keyboardEventFailures_ = count; }
    // How many taps currently receive events (enabled, in a run loop).
    int activeTapCount() const;


protected:
    void releaseEvent(PlatformEvent* event) override { delete event; }

private:
    SimAccessibility& accessibility_;
    TapChain chain_;
    std::vector<PlatformEvent> delivered_;
    std::vector<std::weak_ptr<EventTap>> created_;
    bool tapCreationFails_ = false;
    bool sourceCreationFails_ = false;
    int keyboardEventFailures_ = 0;
};

}  // namespace orvane
