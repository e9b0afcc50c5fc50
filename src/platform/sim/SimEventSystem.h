// An in-process event system with Quartz's rules: taps in a chain, events injected and delivered.
#pragma once

#include "platform/sim/SimAccessibility.h"
#include "platform/tapchain/ChainEventSystem.h"

#include <vector>

namespace orvane {

class SimEventSystem final : public ChainEventSystem {
public:
    // Tap creation fails while the process is not trusted.
    explicit SimEventSystem(SimAccessibility& accessibility);

    // An event from the keyboard. Returns once it (and whatever it made taps post) has travelled.
    void inject(const PlatformEvent& event) { enterFromKeyboard(event); }
    // Everything delivered to applications so far, oldest first; taking it empties the record.
    std::vector<PlatformEvent> takeDelivered();
    // Instead of recording, hand each delivered event to this function (null: record again).
    void setOutput(TapChain::Output output);

    void setTapCreationFails(bool fails) { tapCreationFails_ = fails; }
    void setSourceCreationFails(bool fails) { sourceCreationFails_ = fails; }
    // The next `count` keyboard event creations fail; the ones after succeed.
    void failNextKeyboardEventCreations(int count) { keyboardEventFailures_ = count; }
    // How many taps currently receive events (enabled, in a run loop).
    int activeTapCount() const { return liveTapCount(); }

private:
    bool mayCreateTap() override { return accessibility_.trusted() && !tapCreationFails_; }
    bool mayCreateSource() override { return !sourceCreationFails_; }
    bool mayCreateKeyboardEvent() override;

    SimAccessibility& accessibility_;
    std::vector<PlatformEvent> delivered_;
    bool tapCreationFails_ = false;
    bool sourceCreationFails_ = false;
    int keyboardEventFailures_ = 0;
};

}  // namespace orvane
