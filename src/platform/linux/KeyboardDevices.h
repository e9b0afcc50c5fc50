// The Linux device layer under the event system: keyboards read, and the keyboard applications read.
#pragma once

#include <cstdint>
#include <functional>

namespace orvane {

using KeyboardId = int;

// Every keyboard of the machine, present and plugged later. Calls its listener on the main thread.
class KeyboardInput {
public:
    struct Listener {
        virtual ~Listener() = default;
        // value: 0 release, 1 press, 2 autorepeat.
        virtual void keyEvent(KeyboardId keyboard, std::uint16_t code, int value) = 0;
        // The keyboard is gone; keys it held are released by the listener.
        virtual void keyboardRemoved(KeyboardId keyboard) = 0;
    };

    virtual ~KeyboardInput() = default;
    virtual void setListener(Listener* listener) = 0;
    // Grabbed keyboards reach no one else. Each is grabbed once none of its keys is held, so that a
    // key held at the start is released where it was pressed.
    virtual void setGrabbed(bool grabbed) = 0;
    virtual bool isGrabbed(KeyboardId keyboard) const = 0;
    virtual void setCapsLockLight(bool on) = 0;
};

// The one virtual keyboard applications read from.
class KeyboardOutput {
public:
    virtual ~KeyboardOutput() = default;
    // One key change, then a sync report. value: 0 release, 1 press, 2 autorepeat.
    virtual void writeKey(std::uint16_t code, int value) = 0;
    // Called when the desktop switches the Caps Lock light of this keyboard.
    std::function<void(bool on)> onCapsLockLight;
};

}  // namespace orvane
