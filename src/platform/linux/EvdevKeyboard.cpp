#include "platform/linux/EvdevKeyboard.h"

#include "platform/linux/KeyboardKeymap.h"
#include "platform/linux/UinputKeyboard.h"

#include <libevdev/libevdev.h>

#include <sys/ioctl.h>

#include <cerrno>
#include <cstring>
#include <iterator>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {
namespace {

bool isKeyboard(const libevdev* device) {
    if (!libevdev_has_event_type(device, EV_KEY)) return false;
    for (const unsigned letter : {KEY_Q, KEY_A, KEY_Z, KEY_M, KEY_P, KEY_L})
        if (!libevdev_has_event_code(device, EV_KEY, letter)) return false;
    return true;
}

}  // namespace

std::bitset<KEY_CNT> EvdevKeyboard::keysHeld(int fd) {
    unsigned char bits[KEY_CNT / 8 + 1] = {};
    std::bitset<KEY_CNT> held;
    if (::ioctl(fd, EVIOCGKEY(sizeof bits), bits) < 0) return held;
    for (std::size_t code = 0; code < KEY_CNT; ++code) held[code] = (bits[code / 8] >> (code % 8)) & 1;
    return held;
}


std::unique_ptr<EvdevKeyboard> EvdevKeyboard::open(const char* devnode, RecordedCapsLockMapping& capsLock) {
    const int fd = ::open(devnode, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return nullptr;
    libevdev* device = nullptr;
    if (libevdev_new_from_fd(fd, &device) != 0) {
        ::close(fd);
        return nullptr;
    }
    std::unique_ptr<EvdevKeyboard> keyboard(new EvdevKeyboard(fd, device));
    if (!isKeyboard(device) || std::strcmp(libevdev_get_name(device), UinputKeyboard::deviceName) == 0) return nullptr;
    if (!capsLockEntry(fd)) keyboard->capsLock_ = &capsLock;
    keyboard->held_ = keysHeld(fd);
    return keyboard;
}

EvdevKeyboard::~EvdevKeyboard() {
    libevdev_free(device_);
    ::close(fd_);  // closing also ends a grab
}

bool EvdevKeyboard::readKeys(KeyboardInput::Listener* listener, KeyboardId id) {
    input_event events[64];
    for (;;) {
        const ssize_t got = ::read(fd_, events, sizeof events);
        if (got < 0) {
            if (errno == EINTR) continue;
            return errno == EAGAIN;  // all read; anything else: the device is gone
        }
        const std::size_t count = static_cast<std::size_t>(got) / sizeof(input_event);
        for (std::size_t i = 0; i < count; ++i) handle(events[i], listener, id);
        // evdev hands over all it holds, up to the room given: less than that means nothing is
        // left, which saves the read that would only say so.
        if (count < std::size(events)) return true;
    }
}

void EvdevKeyboard::handle(const input_event& event, KeyboardInput::Listener* listener, KeyboardId id) {
    // After a dropped report, what follows up to the next report is incomplete: the keys' state is
    // asked for instead, and the differences are handed over as events of their own.
    if (event.type == EV_SYN && event.code == SYN_DROPPED) {
        dropped_ = true;
    } else if (dropped_) {
        if (event.type == EV_SYN && event.code == SYN_REPORT) {
            dropped_ = false;
            resync(listener, id);
        }
    } else if (event.type == EV_KEY) {
        key(static_cast<std::uint16_t>(event.code), event.value, listener, id);
    }
}

void EvdevKeyboard::key(std::uint16_t code, int value, KeyboardInput::Listener* listener, KeyboardId id) {
    if (code < held_.size()) held_[code] = value != 0;
    if (!listener) return;
    if (code == KEY_CAPSLOCK && capsLock_) code = capsLockKey(value);
    listener->keyEvent(id, code, value);
}

void EvdevKeyboard::resync(KeyboardInput::Listener* listener, KeyboardId id) {
    const std::bitset<KEY_CNT> now = keysHeld(fd_);
    for (std::uint16_t code = 0; code < KEY_CNT; ++code)
        if (now[code] != held_[code]) key(code, now[code] ? 1 : 0, listener, id);
}

std::uint16_t EvdevKeyboard::capsLockKey(int value) {
    // A held Caps Lock stays the key it was pressed as, whatever the mapping does meanwhile.
    if (value == 1 || capsLockPressedAs_ == 0) capsLockPressedAs_ = grabbed_ ? capsLock_->capsLockKey() : std::uint16_t{KEY_CAPSLOCK};
    const std::uint16_t key = capsLockPressedAs_;
    if (value == 0) capsLockPressedAs_ = 0;
    return key;
}

void EvdevKeyboard::grabIfIdle() {
    if (grabbed_ || held_.any()) return;
    grabbed_ = libevdev_grab(device_, LIBEVDEV_GRAB) == 0;
}

void EvdevKeyboard::ungrab() {
    if (!grabbed_) return;
    libevdev_grab(device_, LIBEVDEV_UNGRAB);
    grabbed_ = false;
}

void EvdevKeyboard::setCapsLockLight(bool on) {
    if (libevdev_has_event_code(device_, EV_LED, LED_CAPSL))
        libevdev_kernel_set_led_value(device_, LED_CAPSL, on ? LIBEVDEV_LED_ON : LIBEVDEV_LED_OFF);
}

}  // namespace orvane
