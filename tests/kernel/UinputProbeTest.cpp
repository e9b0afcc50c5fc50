// Proves the kernel test machine: a uinput keyboard and the emulated USB keyboard both deliver
// their events through evdev. Runs through kernel-vm.sh; skips anywhere else.
#include "EvdevSupport.h"

#include <gtest/gtest.h>

#include <libevdev/libevdev-uinput.h>

#include <cstdlib>
#include <vector>

namespace {

using namespace kerneltest;

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
    const Evdev keyboard = findUsbKeyboard();
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
