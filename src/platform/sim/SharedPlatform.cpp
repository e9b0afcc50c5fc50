// The simulated event system serves the whole process when it is the build's choice.
#include "platform/sim/SimEventSystem.h"

namespace orvane {

SimAccessibility& simAccessibility() {
    static SimAccessibility accessibility;
    return accessibility;
}

SimEventSystem& simEventSystem() {
    static SimEventSystem system(simAccessibility());
    return system;
}

EventSystem& EventSystem::shared() { return simEventSystem(); }
Accessibility& Accessibility::shared() { return simAccessibility(); }

}  // namespace orvane
