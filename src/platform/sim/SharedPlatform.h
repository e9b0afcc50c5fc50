// The process-wide simulated platform objects, for the simulator and for tests that drive the app.
#pragma once

#include "platform/sim/SimEventSystem.h"

namespace orvane {

SimAccessibility& simAccessibility();
SimEventSystem& simEventSystem();

}  // namespace orvane
