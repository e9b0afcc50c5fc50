// One keyboard read through libevdev: its key events, the resync after dropped reports, its grab and
// its Caps Lock light.
#pragma once

#include "platform/linux/KeyboardDevices.h"

#include <memory>

struct libevdev;

namespace orvane {

class EvdevKeyboard {
public:
    // The keyboard at devnode: an event device with keys and the letter keys, not named like an
    // Orvane output. None otherwise, or when it cannot be opened.
    static std::unique_ptr<EvdevKeyboard> open(const char* devnode);
    ~EvdevKeyboard();
    EvdevKeyboard(const EvdevKeyboard&) = delete;
    EvdevKeyboard& operator=(const EvdevKeyboard&) = delete;

    int fd() const { return fd_; }
    // Hands every queued key event to the listener as `id`'s; false once the device is gone.
    bool readKeys(KeyboardInput::Listener* listener, KeyboardId id);
    bool isGrabbed() const { return grabbed_; }
    // Grabs it unless one of its keys is held, so that a key held now is released where it was pressed.
    void grabIfIdle();
    void ungrab();
    void setCapsLockLight(bool on);

private:
    EvdevKeyboard(int fd, libevdev* device) : fd_(fd), device_(device) {}

    int fd_;
    libevdev* device_;
    bool grabbed_ = false;
};

}  // namespace orvane
