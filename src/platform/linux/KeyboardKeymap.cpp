#include "platform/linux/KeyboardKeymap.h"

#include <linux/input.h>
#include <sys/ioctl.h>

#include <cstdio>
#include <cstring>

namespace orvane {
namespace {

input_keymap_entry entryFor(std::uint32_t scancode) {
    input_keymap_entry entry{};
    entry.len = sizeof(scancode);
    std::memcpy(entry.scancode, &scancode, sizeof(scancode));
    return entry;
}

}  // namespace

std::optional<CapsLockEntry> capsLockEntry(int fd) {
    // A HID keymap has no entry for the AT code and atkbd's is too short for the HID one, so at most
    // one of them answers.
    for (const std::uint32_t scancode : {hidCapsLockScancode, atCapsLockScancode}) {
        input_keymap_entry entry = entryFor(scancode);
        if (::ioctl(fd, EVIOCGKEYCODE_V2, &entry) == 0) return CapsLockEntry{scancode, static_cast<std::uint16_t>(entry.keycode)};
    }
    return std::nullopt;
}

bool setKeyForScancode(int fd, std::uint32_t scancode, std::uint16_t key) {
    input_keymap_entry entry = entryFor(scancode);
    entry.keycode = key;
    return ::ioctl(fd, EVIOCSKEYCODE_V2, &entry) == 0;
}

std::string keyboardIdentity(int fd) {
    input_id id{};
    ::ioctl(fd, EVIOCGID, &id);
    auto text = [fd](unsigned long request) {
        char buffer[256] = {};
        return ::ioctl(fd, request, buffer) < 0 ? std::string() : std::string(buffer, strnlen(buffer, sizeof buffer));
    };
    char ids[32];
    std::snprintf(ids, sizeof ids, "%04x:%04x:%04x:%04x", id.bustype, id.vendor, id.product, id.version);
    return std::string(ids) + '|' + text(EVIOCGNAME(255)) + '|' + text(EVIOCGPHYS(255)) + '|' + text(EVIOCGUNIQ(255));
}

}  // namespace orvane
