// The process-wide simulated platform objects, for the simulator and for tests that drive the app.
#pragma once

#include "platform/DesktopWords.h"
#include "platform/sim/SimEventSystem.h"

namespace orvane {

SimAccessibility& simAccessibility();
SimEventSystem& simEventSystem();
// The words DesktopWords::shared() gives where the simulated platform is the build's (tests).
void simulateDesktopWords(const DesktopWords& words);

}  // namespace orvane
