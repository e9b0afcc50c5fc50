#include "platform/linux/EvdevKeyboards.h"

#include "platform/linux/CapsLockKeymap.h"
#include "platform/linux/UinputKeyboard.h"

#include <QSocketNotifier>

#include <libevdev/libevdev.h>
#include <libudev.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <unistd.h>

namespace orvane {

struct EvdevKeyboards::Keyboard {
    KeyboardId id = 0;
    int fd = -1;
    libevdev* device = nullptr;
    QSocketNotifier* notifier = nullptr;
    bool grabbed = false;

    ~Keyboard() {
        delete notifier;
        libevdev_free(device);
        if (fd >= 0) ::close(fd);  // closing also ends a grab
    }
};

namespace {

bool isKeyboard(const libevdev* device) {
    if (!libevdev_has_event_type(device, EV_KEY)) return false;
    for (const unsigned letter : {KEY_Q, KEY_A, KEY_Z, KEY_M, KEY_P, KEY_L})
        if (!libevdev_has_event_code(device, EV_KEY, letter)) return false;
    return true;
}

bool isEventNode(const char* devnode) { return devnode && std::strncmp(devnode, "/dev/input/event", 16) == 0; }

bool holdsAnyKey(const libevdev* device) {
    for (unsigned code = 0; code <= KEY_MAX; ++code)
        if (libevdev_has_event_code(device, EV_KEY, code) && libevdev_get_event_value(device, EV_KEY, code)) return true;
    return false;
}

}  // namespace

EvdevKeyboards::EvdevKeyboards(std::string ownDevnode, QObject* parent) : QObject(parent), ownDevnode_(std::move(ownDevnode)) {
    udev_ = udev_new();
    if (!udev_) return;
    // Without a udev daemon (a bare system) the kernel's own announcements are all there is.
    const bool udevRuns = std::filesystem::exists("/run/udev/control");
    monitor_ = udev_monitor_new_from_netlink(udev_, udevRuns ? "udev" : "kernel");
    if (monitor_ && udev_monitor_filter_add_match_subsystem_devtype(monitor_, "input", nullptr) == 0 &&
        udev_monitor_enable_receiving(monitor_) == 0) {
        auto* notifier = new QSocketNotifier(udev_monitor_get_fd(monitor_), QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, [this] { onHotplug(); });
    }
    udev_enumerate* enumerate = udev_enumerate_new(udev_);
    udev_enumerate_add_match_subsystem(enumerate, "input");
    udev_enumerate_scan_devices(enumerate);
    udev_list_entry* entry;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(enumerate)) {
        udev_device* device = udev_device_new_from_syspath(udev_, udev_list_entry_get_name(entry));
        if (!device) continue;
        if (const char* devnode = udev_device_get_devnode(device); isEventNode(devnode)) addDevice(devnode, false);
        udev_device_unref(device);
    }
    udev_enumerate_unref(enumerate);
}

EvdevKeyboards::~EvdevKeyboards() {
    keyboards_.clear();
    if (monitor_) udev_monitor_unref(monitor_);
    if (udev_) udev_unref(udev_);
}

bool EvdevKeyboards::canReadEventDevices() {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/input", error)) {
        const std::string path = entry.path().string();
        if (isEventNode(path.c_str()) && ::access(path.c_str(), R_OK) != 0) return false;
    }
    return true;
}

void EvdevKeyboards::addDevice(const char* devnode, bool pluggedNow) {
    if (devnode == ownDevnode_ || keyboards_.contains(devnode)) return;
    auto keyboard = std::make_unique<Keyboard>();
    keyboard->fd = ::open(devnode, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (keyboard->fd < 0 || libevdev_new_from_fd(keyboard->fd, &keyboard->device) != 0) return;
    if (!isKeyboard(keyboard->device) || std::strcmp(libevdev_get_name(keyboard->device), UinputKeyboard::deviceName) == 0) return;
    // Caps Lock below the taps holds for keyboards plugged in later too; those present at the
    // start had it from the HID tool.
    if (pluggedNow) applyCapsLockMappingInForce(keyboard->fd);
    keyboard->id = nextId_++;
    Keyboard* added = keyboard.get();
    keyboard->notifier = new QSocketNotifier(keyboard->fd, QSocketNotifier::Read);
    connect(keyboard->notifier, &QSocketNotifier::activated, this, [this, added] { readEvents(*added); });
    keyboards_.emplace(devnode, std::move(keyboard));
    if (grabbed_) grabIfIdle(*added);
}

void EvdevKeyboards::removeDevice(const std::string& devnode) {
    const auto found = keyboards_.find(devnode);
    if (found == keyboards_.end()) return;
    const KeyboardId id = found->second->id;
    // Not deleted at once: this may run inside the keyboard's own notifier.
    found->second->notifier->setEnabled(false);
    found->second->notifier->deleteLater();
    found->second->notifier = nullptr;
    keyboards_.erase(found);
    if (listener_) listener_->keyboardRemoved(id);
}

void EvdevKeyboards::readEvents(Keyboard& keyboard) {
    input_event event{};
    unsigned flag = LIBEVDEV_READ_FLAG_NORMAL;
    for (;;) {
        const int status = libevdev_next_event(keyboard.device, flag, &event);
        if (status == -EAGAIN) {
            if (flag == LIBEVDEV_READ_FLAG_NORMAL) break;
            flag = LIBEVDEV_READ_FLAG_NORMAL;  // the resync after a dropped report is complete
            continue;
        }
        if (status < 0) {  // the device is gone
            for (auto& [devnode, known] : keyboards_)
                if (known.get() == &keyboard) return removeDevice(std::string(devnode));
            return;
        }
        // After a dropped report, libevdev hands over the differences as events of their own.
        if (status == LIBEVDEV_READ_STATUS_SYNC) flag = LIBEVDEV_READ_FLAG_SYNC;
        if (event.type == EV_KEY && listener_) listener_->keyEvent(keyboard.id, static_cast<std::uint16_t>(event.code), event.value);
    }
    if (grabbed_ && !keyboard.grabbed) grabIfIdle(keyboard);
}

void EvdevKeyboards::grabIfIdle(Keyboard& keyboard) {
    if (keyboard.grabbed || holdsAnyKey(keyboard.device)) return;
    keyboard.grabbed = libevdev_grab(keyboard.device, LIBEVDEV_GRAB) == 0;
}

void EvdevKeyboards::setGrabbed(bool grabbed) {
    grabbed_ = grabbed;
    for (auto& [devnode, keyboard] : keyboards_) {
        if (grabbed) {
            grabIfIdle(*keyboard);
        } else if (keyboard->grabbed) {
            libevdev_grab(keyboard->device, LIBEVDEV_UNGRAB);
            keyboard->grabbed = false;
        }
    }
}

bool EvdevKeyboards::isGrabbed(KeyboardId id) const {
    for (const auto& [devnode, keyboard] : keyboards_)
        if (keyboard->id == id) return keyboard->grabbed;
    return false;
}

void EvdevKeyboards::setCapsLockLight(bool on) {
    for (auto& [devnode, keyboard] : keyboards_)
        if (libevdev_has_event_code(keyboard->device, EV_LED, LED_CAPSL))
            libevdev_kernel_set_led_value(keyboard->device, LED_CAPSL, on ? LIBEVDEV_LED_ON : LIBEVDEV_LED_OFF);
}

void EvdevKeyboards::onHotplug() {
    udev_device* device = udev_monitor_receive_device(monitor_);
    if (!device) return;
    const char* action = udev_device_get_action(device);
    const char* devnode = udev_device_get_devnode(device);
    if (action && isEventNode(devnode)) {
        if (std::strcmp(action, "add") == 0) addDevice(devnode, true);
        else if (std::strcmp(action, "remove") == 0) removeDevice(devnode);
    }
    udev_device_unref(device);
}

}  // namespace orvane
