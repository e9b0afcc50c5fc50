// One keyboard: its key events read straight from its event device (the resync after dropped reports
// included), and through libevdev its grab and its Caps Lock light.
#pragma once

#include "platform/linux/KeyboardDevices.h"
#include "platform/linux/RecordedCapsLockMapping.h"

#include <linux/input.h>

#include <bitset>
#include <memory>

struct libevdev;

namespace orvane {

class EvdevKeyboard {
public:
    // The keyboard at devnode: an event device with keys and the letter keys, not named like an
    // Orvane output. None otherwise, or when it cannot be opened. While it is grabbed, a keyboard
    // whose kernel keymap has no Caps Lock entry gives for Caps Lock what `capsLock` says, as one
    // whose keymap orvane-hidutil changed does by itself.
    static std::unique_ptr<EvdevKeyboard> open(const char* devnode, RecordedCapsLockMapping& capsLock);
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
    std::uint16_t capsLockKey(int value);
    void handle(const input_event& event, KeyboardInput::Listener* listener, KeyboardId id);
    void key(std::uint16_t code, int value, KeyboardInput::Listener* listener, KeyboardId id);
    void resync(KeyboardInput::Listener* listener, KeyboardId id);
    static std::bitset<KEY_CNT> keysHeld(int fd);

    int fd_;
    libevdev* device_;
    bool grabbed_ = false;
    RecordedCapsLockMapping* capsLock_ = nullptr;  // none: the kernel keymap turns Caps Lock itself
    std::uint16_t capsLockPressedAs_ = 0;
    std::bitset<KEY_CNT> held_;  // the keys held as the events read so far say
    bool dropped_ = false;       // a report was dropped: events are skipped up to the next one
};

}  // namespace orvane
