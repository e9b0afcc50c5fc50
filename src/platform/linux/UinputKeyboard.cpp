#include "platform/linux/UinputKeyboard.h"

#include "platform/linux/EvdevKeyTable.h"

#include <QSocketNotifier>

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>
#include <linux/input.h>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace orvane {

UinputKeyboard::UinputKeyboard(QObject* parent) : QObject(parent) {
    description_ = libevdev_new();
    libevdev_set_name(description_, deviceName);
    libevdev_set_id_bustype(description_, BUS_VIRTUAL);
    // Every key a keyboard may have; no buttons, so that nothing takes it for a mouse or a joystick.
    for (unsigned code = 1; code <= evdevkeys::highestCode; ++code)
        if (!evdevkeys::isButtonCode(static_cast<std::uint16_t>(code))) libevdev_enable_event_code(description_, EV_KEY, code, nullptr);
    for (const unsigned light : {LED_NUML, LED_CAPSL, LED_SCROLLL}) libevdev_enable_event_code(description_, EV_LED, light, nullptr);
    if (libevdev_uinput_create_from_device(description_, LIBEVDEV_UINPUT_OPEN_MANAGED, &device_) != 0) {
        device_ = nullptr;
        return;
    }
    // The desktop sets this keyboard's lights through the same file.
    const int fd = libevdev_uinput_get_fd(device_);
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) | O_NONBLOCK);
    notifier_ = new QSocketNotifier(fd, QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] { readLights(); });
}

UinputKeyboard::~UinputKeyboard() {
    // Destroying the device makes the kernel release every key it still holds.
    if (device_) libevdev_uinput_destroy(device_);
    libevdev_free(description_);
}

std::string UinputKeyboard::devnode() const {
    const char* node = device_ ? libevdev_uinput_get_devnode(device_) : nullptr;
    return node ? node : "";
}

void UinputKeyboard::writeKey(std::uint16_t code, int value) {
    if (!device_) return;
    // The key and its report in one write: one system call per key change, not one per event.
    input_event events[2]{};
    events[0].type = EV_KEY;
    events[0].code = code;
    events[0].value = value;
    events[1].type = EV_SYN;
    events[1].code = SYN_REPORT;
    ssize_t written;
    do written = ::write(libevdev_uinput_get_fd(device_), events, sizeof events);
    while (written < 0 && errno == EINTR);
}

void UinputKeyboard::readLights() {
    input_event event{};
    while (::read(libevdev_uinput_get_fd(device_), &event, sizeof event) == sizeof event)
        if (event.type == EV_LED && event.code == LED_CAPSL && onCapsLockLight) onCapsLockLight(event.value != 0);
}

}  // namespace orvane
