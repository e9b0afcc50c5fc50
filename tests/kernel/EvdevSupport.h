// Event devices inside the kernel test machine: open a device, find the emulated USB keyboard, and
// ask the host to press keys on it.
#pragma once

#include <libevdev/libevdev.h>

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <thread>

namespace kerneltest {

using namespace std::chrono_literals;

// Frees the device and closes the file it reads.
struct EvdevDeleter {
    void operator()(libevdev* device) const {
        const int fd = libevdev_get_fd(device);
        libevdev_free(device);
        if (fd >= 0) close(fd);
    }
};
using Evdev = std::unique_ptr<libevdev, EvdevDeleter>;

inline Evdev openEventDevice(const std::filesystem::path& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    libevdev* device = nullptr;
    if (fd >= 0 && libevdev_new_from_fd(fd, &device) != 0) close(fd);
    return Evdev(device);
}

// The emulated USB keyboard, which comes up some seconds after boot, once the USB bus has
// enumerated it; none when it does not within 40 s.
inline Evdev findUsbKeyboard() {
    for (const auto deadline = std::chrono::steady_clock::now() + 40s; std::chrono::steady_clock::now() < deadline;
         std::this_thread::sleep_for(200ms)) {
        for (const auto& entry : std::filesystem::directory_iterator("/dev/input")) {
            if (!entry.path().filename().string().starts_with("event")) continue;
            Evdev device = openEventDevice(entry.path());
            if (device && libevdev_get_id_bustype(device.get()) == BUS_USB &&
                libevdev_has_event_code(device.get(), EV_KEY, KEY_A))
                return device;
        }
    }
    return nullptr;
}

// The host's console watcher turns this line into a key event on the emulated USB keyboard.
inline void askHostTo(const char* action, const char* qcode) {
    std::printf("ORVANE-QMP %s %s\n", action, qcode);
    std::fflush(stdout);
}

}  // namespace kerneltest
