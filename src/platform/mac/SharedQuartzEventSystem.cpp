// Quartz's event taps and the system's Accessibility trust serve the whole process on macOS.
#include "platform/mac/MacAccessibility.h"
#include "platform/mac/QuartzEventSystem.h"

namespace orvane {

EventSystem& EventSystem::shared() {
    static QuartzEventSystem system;
    return system;
}

Accessibility& Accessibility::shared() {
    static MacAccessibility accessibility;
    return accessibility;
}

}  // namespace orvane
