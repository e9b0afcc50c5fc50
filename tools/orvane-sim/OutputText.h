// How the simulator writes delivered events and capture records.
#pragma once

#include "interception/DebugEvent.h"
#include "platform/tapchain/PlatformEvent.h"

#include <string>
#include <vector>

namespace orvane::sim {

// "keyDown 11 flags=0x120000", "systemDefined subtype=8 data1=0x100A00", "event 15", with
// " synthetic" after events that carry our marker.
std::string describeEvent(const PlatformEvent& event);
// The events joined by " ; ", or "-" when there are none.
std::string describeDelivered(const std::vector<PlatformEvent>& events);
// "capture: keyDown keycode=0 flags=0x0 decoded=\"→ A\" active=true"
std::string describeCapture(const DebugEvent& record);

}  // namespace orvane::sim
