// A keyboard event as the simulated (and the Linux) event system carries it.
#pragma once

#include "platform/EventSystem.h"

#include <cstdint>
#include <optional>

namespace orvane {

struct PlatformEvent {
    std::uint32_t type = 0;
    std::uint16_t keyCode = 0;
    std::uint64_t flags = 0;
    std::int64_t userData = 0;
    // Present when the event converts to a system-defined event object.
    std::optional<SystemDefinedFields> systemDefined;
    std::uint64_t timestamp = 0;  // nanoseconds of a steady clock, as Quartz stamps events
};

}  // namespace orvane
