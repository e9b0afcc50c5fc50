// Reading event devices inside the kernel test machine: open a device, take its next events, find
// the emulated USB keyboard, and ask the host to press keys on it.
#pragma once

#include <libevdev/libevdev.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
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

struct Event {
    unsigned type;
    unsigned code;
    int value;
    bool operator==(const Event&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Event& event) {
    return out << libevdev_event_type_get_name(event.type) << ' ' << libevdev_event_code_get_name(event.type, event.code) << ' '
               << event.value;
}

inline Evdev openEventDevice(const std::filesystem::path& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    libevdev* device = nullptr;
    if (fd >= 0 && libevdev_new_from_fd(fd, &device) != 0) close(fd);
    return Evdev(device);
}

// The next event other than SYN_REPORT, or nothing when none comes within the timeout.
inline std::optional<Event> nextEvent(libevdev* device, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (std::chrono::steady_clock::now() < deadline) {
        input_event event{};
        const int status = libevdev_next_event(device, LIBEVDEV_READ_FLAG_NORMAL, &event);
        if (status == LIBEVDEV_READ_STATUS_SUCCESS && !(event.type == EV_SYN && event.code == SYN_REPORT))
            return Event{event.type, event.code, event.value};
        if (status == -EAGAIN) {
            pollfd waiting{libevdev_get_fd(device), POLLIN, 0};
            poll(&waiting, 1, 50);
        }
    }
    return std::nullopt;
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
