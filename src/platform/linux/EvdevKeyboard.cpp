#include "platform/linux/EvdevKeyboard.h"

#include "platform/linux/EvdevKeyTable.h"
#include "platform/linux/KeyboardKeymap.h"
#include "platform/linux/UinputKeyboard.h"

#include <libevdev/libevdev.h>

#include <cerrno>
#include <cstring>
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

bool holdsAnyKey(const libevdev* device) {
    for (unsigned code = 0; code <= KEY_MAX; ++code)
        if (libevdev_has_event_code(device, EV_KEY, code) && libevdev_get_event_value(device, EV_KEY, code)) return true;
    return false;
}

}  // namespace

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
    // A changed keymap can give keys the keyboard did not announce (F18 for Caps Lock on a PS/2
    // keyboard), and libevdev drops events of codes it does not know the device to have.
    for (unsigned code = 1; code <= evdevkeys::highestCode; ++code)
        if (!evdevkeys::isButtonCode(static_cast<std::uint16_t>(code))) libevdev_enable_event_code(device, EV_KEY, code, nullptr);
    return keyboard;
}

EvdevKeyboard::~EvdevKeyboard() {
    libevdev_free(device_);
    ::close(fd_);  // closing also ends a grab
}

bool EvdevKeyboard::readKeys(KeyboardInput::Listener* listener, KeyboardId id) {
    input_event event{};
    unsigned flag = LIBEVDEV_READ_FLAG_NORMAL;
    for (;;) {
        const int status = libevdev_next_event(device_, flag, &event);
        if (status == -EAGAIN) {
            if (flag == LIBEVDEV_READ_FLAG_NORMAL) return true;
            flag = LIBEVDEV_READ_FLAG_NORMAL;  // the resync after a dropped report is complete
            continue;
        }
        if (status < 0) return false;
        // After a dropped report, libevdev hands over the differences as events of their own.
        if (status == LIBEVDEV_READ_STATUS_SYNC) flag = LIBEVDEV_READ_FLAG_SYNC;
        if (event.type != EV_KEY || !listener) continue;
        auto code = static_cast<std::uint16_t>(event.code);
        if (code == KEY_CAPSLOCK && capsLock_) code = capsLockKey(event.value);
        listener->keyEvent(id, code, event.value);
    }
}

std::uint16_t EvdevKeyboard::capsLockKey(int value) {
    // A held Caps Lock stays the key it was pressed as, whatever the mapping does meanwhile.
    if (value == 1 || capsLockPressedAs_ == 0) capsLockPressedAs_ = grabbed_ ? capsLock_->capsLockKey() : std::uint16_t{KEY_CAPSLOCK};
    const std::uint16_t key = capsLockPressedAs_;
    if (value == 0) capsLockPressedAs_ = 0;
    return key;
}

void EvdevKeyboard::grabIfIdle() {
    if (grabbed_ || holdsAnyKey(device_)) return;
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
