#include "platform/linux/KeyboardFinder.h"

#include <QSocketNotifier>

#include <libudev.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

namespace orvane {

KeyboardFinder::KeyboardFinder(QObject* parent) : QObject(parent) {}

KeyboardFinder::~KeyboardFinder() {
    if (monitor_) udev_monitor_unref(monitor_);
    if (udev_) udev_unref(udev_);
}

bool KeyboardFinder::isEventNode(const char* devnode) {
    return devnode && std::strncmp(devnode, "/dev/input/event", 16) == 0;
}

bool KeyboardFinder::canReadEventDevices() {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/input", error)) {
        const std::string path = entry.path().string();
        if (isEventNode(path.c_str()) && ::access(path.c_str(), R_OK) != 0) return false;
    }
    return true;
}

void KeyboardFinder::start(Handlers handlers) {
    handlers_ = std::move(handlers);
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
        if (const char* devnode = udev_device_get_devnode(device); isEventNode(devnode)) handlers_.added(devnode, false);
        udev_device_unref(device);
    }
    udev_enumerate_unref(enumerate);
}

void KeyboardFinder::onHotplug() {
    udev_device* device = udev_monitor_receive_device(monitor_);
    if (!device) return;
    const char* action = udev_device_get_action(device);
    const char* devnode = udev_device_get_devnode(device);
    if (action && isEventNode(devnode)) {
        if (std::strcmp(action, "add") == 0) handlers_.added(devnode, true);
        else if (std::strcmp(action, "remove") == 0) handlers_.removed(devnode);
    }
    udev_device_unref(device);
}

}  // namespace orvane
