// Writes delivered Quartz events to the virtual keyboard, with exactly the modifiers they carry.
#pragma once

#include "platform/linux/KeyboardDevices.h"
#include "platform/tapchain/PlatformEvent.h"

#include <bitset>

namespace orvane {

// Knows which keys it holds down on the output, so that nothing it pressed stays pressed.
class KeyOutput {
public:
    explicit KeyOutput(KeyboardOutput& output) : output_(&output) {}
    // From now on nothing is written (the device is going away).
    void detach() { output_ = nullptr; }

    // heldFlags: the modifiers physically held now. An event whose modifiers differ from them (a
    // combination made by a mapping) gets them for its key alone: the missing ones pressed, the
    // extra ones released, then all as they were.
    void deliver(const PlatformEvent& event, std::uint64_t heldFlags);
    // A key the taps never see.
    void passThrough(std::uint16_t code, int value);
    void releaseAll();
    bool isDown(std::uint16_t code) const { return code < down_.size() && down_[code]; }

private:
    void setKey(std::uint16_t code, bool down, bool repeat = false);
    void deliverKey(std::uint16_t code, std::optional<std::uint64_t> ownFlag, bool down, std::uint64_t flags,
                    std::uint64_t heldFlags);

    KeyboardOutput* output_;
    std::bitset<0x300> down_;
};

}  // namespace orvane
