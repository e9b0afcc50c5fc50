#include "platform/sim/SimEventSystem.h"

namespace orvane {

SimEventSystem::SimEventSystem(SimAccessibility& accessibility) : accessibility_(accessibility) { setOutput(nullptr); }

bool SimEventSystem::mayCreateKeyboardEvent() {
    if (keyboardEventFailures_ == 0) return true;
    --keyboardEventFailures_;
    return false;
}

std::vector<PlatformEvent> SimEventSystem::takeDelivered() {
    std::vector<PlatformEvent> taken;
    taken.swap(delivered_);
    return taken;
}

void SimEventSystem::setOutput(TapChain::Output output) {
    if (output) ChainEventSystem::setOutput(std::move(output));
    else ChainEventSystem::setOutput([this](const PlatformEvent& event) { delivered_.push_back(event); });
}

}  // namespace orvane
