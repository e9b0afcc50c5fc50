// An EventSystem whose taps stand in a TapChain; backends supply its input, output and trust.
#pragma once

#include "platform/tapchain/TapChain.h"

#include <vector>

namespace orvane {

// Every EventSystem operation except those that touch the outside world: a backend feeds the
// chain (enterFromKeyboard), receives what leaves it (onDelivered) and says whether taps may be made.
class ChainEventSystem : public EventSystem {
public:
    ChainEventSystem();
    ~ChainEventSystem() override;

    TapHandle createTap(TapLocation location, TapPlacement placement, TapOptions options, std::uint64_t eventMask,
                        TapCallback callback, void* userInfo) override;
    SourceHandle createRunLoopSource(const TapHandle& tap) override;
    void addToCurrentRunLoop(const SourceHandle& source) override;
    void removeFromCurrentRunLoop(const SourceHandle& source) override;
    void enableTap(const TapHandle& tap, bool enable) override;

    std::int64_t integerField(const PlatformEvent* event, EventField field) const override;
    std::uint64_t flags(const PlatformEvent* event) const override { return event->flags; }
    std::uint64_t timestamp(const PlatformEvent* event) const override { return event->timestamp; }
    std::optional<SystemDefinedFields> systemDefinedFields(const PlatformEvent* event) const override { return event->systemDefined; }

    OwnedEvent createKeyboardEvent(std::uint16_t virtualKeyCode, bool keyDown) override;
    void setFlags(PlatformEvent* event, std::uint64_t flags) override { event->flags = flags; }
    void setType(PlatformEvent* event, std::uint32_t type) override { event->type = type; }
    void setIntegerField(PlatformEvent* event, EventField field, std::int64_t value) override;
    void postToHID(const PlatformEvent* event) override { chain_.enter(*event); }

    void disableBySystem(const TapHandle& tap, std::uint32_t notificationType);
    // Taps that receive events now (enabled, in a run loop); with activeOnly, only those that may
    // change or end an event's road.
    int liveTapCount(bool activeOnly = false) const;

protected:
    // An event from a keyboard. Returns once it, and whatever taps posted meanwhile, has travelled.
    void enterFromKeyboard(const PlatformEvent& event) { chain_.enter(event); }
    void setOutput(TapChain::Output output) { chain_.setOutput(std::move(output)); }

    virtual bool mayCreateTap() { return true; }
    virtual bool mayCreateSource() { return true; }
    virtual bool mayCreateKeyboardEvent() { return true; }
    // The flags a new keyboard event starts with: the modifiers held now, as Quartz gives them.
    virtual std::uint64_t currentFlags() const { return 0; }
    // After any change of which taps are live.
    virtual void tapsChanged() {}

    void releaseEvent(PlatformEvent* event) override { delete event; }

private:
    TapChain chain_;
    // Sources may outlive the system; through this they tell it of changes only while it lives.
    std::shared_ptr<ChainEventSystem*> self_;
    std::vector<std::weak_ptr<EventTap>> created_;
};

}  // namespace orvane
