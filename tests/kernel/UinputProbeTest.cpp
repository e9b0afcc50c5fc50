// Proves the kernel test machine: a uinput keyboard and the emulated USB keyboard both deliver
// their events through evdev. Runs through kernel-vm.sh; skips anywhere else.
#include <gtest/gtest.h>

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <optional>
#include <thread>
#include <vector>

namespace {

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

std::ostream& operator<<(std::ostream& out, const Event& event) {
    return out << libevdev_event_type_get_name(event.type) << ' ' << libevdev_event_code_get_name(event.type, event.code) << ' '
               << event.value;
}

Evdev openEventDevice(const std::filesystem::path& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    libevdev* device = nullptr;
    if (fd >= 0 && libevdev_new_from_fd(fd, &device) != 0) close(fd);
    return Evdev(device);
}

// The next event other than SYN_REPORT, or nothing when none comes within the timeout.
std::optional<Event> nextEvent(libevdev* device, std::chrono::milliseconds timeout) {
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

// Events up to and including the first of `type`/`code`, within the timeout. LED changes are left
// out: the kernel's keyboard handler sets them on its own schedule (libevdev still tracks them).
std::vector<Event> eventsUntil(libevdev* device, unsigned type, unsigned code) {
    std::vector<Event> events;
    while (const auto event = nextEvent(device, 10s)) {
        if (event->type != EV_LED) events.push_back(*event);
        if (event->type == type && event->code == code) break;
    }
    return events;
}

// The host's console watcher turns this line into a key event on the emulated USB keyboard.
void askHostTo(const char* action, const char* qcode) {
    std::printf("ORVANE-QMP %s %s\n", action, qcode);
    std::fflush(stdout);
}

TEST(UinputKeyboard, keyWrittenToItComesBackThroughItsEventDevice) {
    if (access("/dev/uinput", W_OK) != 0) GTEST_SKIP() << "no writable /dev/uinput: run through tests/kernel/kernel-vm.sh";
    Evdev model(libevdev_new());
    libevdev_set_name(model.get(), "Orvane probe keyboard");
    libevdev_enable_event_code(model.get(), EV_KEY, KEY_A, nullptr);
    libevdev_uinput* created = nullptr;
    ASSERT_EQ(libevdev_uinput_create_from_device(model.get(), LIBEVDEV_UINPUT_OPEN_MANAGED, &created), 0);
    const std::unique_ptr<libevdev_uinput, decltype(&libevdev_uinput_destroy)> keyboard(created, libevdev_uinput_destroy);
    const char* node = libevdev_uinput_get_devnode(keyboard.get());
    ASSERT_NE(node, nullptr);
    const Evdev reader = openEventDevice(node);
    ASSERT_TRUE(reader) << node;
    EXPECT_STREQ(libevdev_get_name(reader.get()), "Orvane probe keyboard");

    for (const int value : {1, 0}) {
        ASSERT_EQ(libevdev_uinput_write_event(keyboard.get(), EV_KEY, KEY_A, value), 0);
        ASSERT_EQ(libevdev_uinput_write_event(keyboard.get(), EV_SYN, SYN_REPORT, 0), 0);
    }
    EXPECT_EQ(eventsUntil(reader.get(), EV_KEY, KEY_A), (std::vector<Event>{{EV_KEY, KEY_A, 1}}));
    EXPECT_EQ(eventsUntil(reader.get(), EV_KEY, KEY_A), (std::vector<Event>{{EV_KEY, KEY_A, 0}}));
}

TEST(UsbKeyboard, capsLockPressedByTheHostArrivesWithItsHidUsage) {
    if (std::getenv("ORVANE_KERNEL_VM") == nullptr)
        GTEST_SKIP() << "needs the emulated USB keyboard of tests/kernel/kernel-vm.sh";
    // The keyboard comes up some seconds after boot, once the USB bus has enumerated it.
    Evdev keyboard;
    for (const auto deadline = std::chrono::steady_clock::now() + 40s; !keyboard && std::chrono::steady_clock::now() < deadline;
         std::this_thread::sleep_for(200ms)) {
        for (const auto& entry : std::filesystem::directory_iterator("/dev/input")) {
            if (entry.path().filename().string().starts_with("event")) {
                Evdev device = openEventDevice(entry.path());
                if (device && libevdev_get_id_bustype(device.get()) == BUS_USB &&
                    libevdev_has_event_code(device.get(), EV_KEY, KEY_CAPSLOCK))
                    keyboard = std::move(device);
            }
        }
    }
    ASSERT_TRUE(keyboard) << "no USB keyboard under /dev/input";

    // HID usage page 7 (keyboard), usage 0x39: Caps Lock.
    const Event scan{EV_MSC, MSC_SCAN, 0x70039};
    askHostTo("press", "caps_lock");
    EXPECT_EQ(eventsUntil(keyboard.get(), EV_KEY, KEY_CAPSLOCK), (std::vector<Event>{scan, {EV_KEY, KEY_CAPSLOCK, 1}}));
    askHostTo("release", "caps_lock");
    EXPECT_EQ(eventsUntil(keyboard.get(), EV_KEY, KEY_CAPSLOCK), (std::vector<Event>{scan, {EV_KEY, KEY_CAPSLOCK, 0}}));
    EXPECT_EQ(libevdev_get_event_value(keyboard.get(), EV_LED, LED_CAPSL), 1) << "one press turns the light on";
}

}  // namespace
