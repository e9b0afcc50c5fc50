// The one place a platform event becomes a TapEvent: its fields read through the event system, then decoded.
#pragma once

#include "interception/TapEvent.h"
#include "platform/EventSystem.h"

namespace orvane {

// The system-defined fields are asked for only for system-defined events.
TapEvent readTapEvent(const EventSystem& events, std::uint32_t type, const PlatformEvent* event);

}  // namespace orvane
