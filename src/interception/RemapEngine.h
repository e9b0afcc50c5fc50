// Decides per intercepted event whether it passes, is dropped, or is replaced by posted key events.
#pragma once

#include "interception/TapEvent.h"
#include "model/MappingLookup.h"

namespace orvane {

class RemapEngine {
public:
    explicit RemapEngine(const MappingLookup& lookup) : lookup_(lookup) {}

    // Reads the lookups afresh for every event; keeps no state. Runs on the tap's thread.
    TapDecision handleEvent(const TapEvent& event) const;

private:
    TapDecision handleKey(const TapEvent& event) const;
    TapDecision handleFlagsChanged(const TapEvent& event) const;
    TapDecision handleSystemDefined(const TapEvent& event) const;

    const MappingLookup& lookup_;
};

}  // namespace orvane
