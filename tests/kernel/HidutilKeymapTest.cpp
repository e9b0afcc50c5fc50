// orvane-hidutil inside a real kernel, on the emulated USB keyboard: the usage table is the kernel's;
// a keyboard plugged in later gets the mapping in force and a later run restores it; refusals print
// one error line and change nothing. The tool's path comes in ORVANE_HIDUTIL. (Caps Lock pressed
// through the tool, the store and the taps: LinuxBackendTest.)
#include "EvdevSupport.h"
#include "platform/linux/CapsLockKeymap.h"
#include "platform/linux/HidUsageTable.h"

#include <gtest/gtest.h>

#include <linux/input.h>
#include <sys/ioctl.h>
#include <sys/wait.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

using namespace kerneltest;
using namespace orvane;

const std::string clearText = R"({"UserKeyMapping":[]})";

std::string remapText(std::uint32_t usageId) {
    return R"({"UserKeyMapping":[{"HIDKeyboardModifierMappingSrc":30064771129,"HIDKeyboardModifierMappingDst":)" +
           std::to_string(0x700000000ULL + usageId) + "}]}";
}

// Runs the tool with both output streams on one pipe, as the mapping store does; `prefix` may drop
// privileges first. Gives the exit status and the output.
std::pair<int, std::string> runTool(const std::string& arguments, const std::string& prefix = "") {
    const std::string command = prefix + std::getenv("ORVANE_HIDUTIL") + " " + arguments + " 2>&1";
    FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    for (char buffer[512]; pipe && fgets(buffer, sizeof buffer, pipe);) output += buffer;
    const int status = pipe ? pclose(pipe) : -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}
std::pair<int, std::string> setProperty(const std::string& text) { return runTool("property --set '" + text + "'"); }

std::optional<unsigned> keyFor(int fd, std::uint32_t scancode) {
    input_keymap_entry entry{};
    entry.len = sizeof scancode;
    std::memcpy(entry.scancode, &scancode, sizeof scancode);
    if (ioctl(fd, EVIOCGKEYCODE_V2, &entry) != 0) return std::nullopt;
    return entry.keycode;
}

struct HidutilOnUsbKeyboard : ::testing::Test {
    static inline Evdev keyboard;
    static void SetUpTestSuite() {
        if (std::getenv("ORVANE_KERNEL_VM") && std::getenv("ORVANE_HIDUTIL")) keyboard = findUsbKeyboard();
    }
    static void TearDownTestSuite() { keyboard.reset(); }
    void SetUp() override {
        if (!std::getenv("ORVANE_KERNEL_VM") || !std::getenv("ORVANE_HIDUTIL"))
            GTEST_SKIP() << "needs the emulated USB keyboard of tools/kernel-vm/kernel-vm.sh and ORVANE_HIDUTIL";
        ASSERT_TRUE(keyboard) << "no USB keyboard under /dev/input";
    }
    static int fd() { return libevdev_get_fd(keyboard.get()); }
};

// Runs first, while the keymap is the kernel's own.
TEST_F(HidutilOnUsbKeyboard, theUsageTableIsTheKernelsOwn) {
    for (std::uint32_t usage = 0x04; usage <= 0xE7; ++usage)
        EXPECT_EQ(keyFor(fd(), 0x70000 | usage), evdevCodeForUsage(usage).value_or(KEY_UNKNOWN)) << std::hex << usage;
}

TEST_F(HidutilOnUsbKeyboard, aKeyboardPluggedInLaterGetsTheMappingInForceAndIsRestoredWithTheRest) {
    ASSERT_EQ(setProperty(remapText(0x29)).first, 0);
    // A keyboard plugged in starts from the kernel's own keymap.
    input_keymap_entry own{.flags = 0, .len = sizeof hidCapsLockScancode, .index = 0, .keycode = KEY_CAPSLOCK, .scancode = {}};
    std::memcpy(own.scancode, &hidCapsLockScancode, sizeof hidCapsLockScancode);
    ASSERT_EQ(ioctl(fd(), EVIOCSKEYCODE_V2, &own), 0);

    const KeymapResult applied = applyCapsLockMappingInForce(fd());
    EXPECT_TRUE(applied.ok) << applied.error;
    EXPECT_EQ(keyFor(fd(), hidCapsLockScancode), KEY_ESC);
    ASSERT_EQ(setProperty(clearText).first, 0);
    EXPECT_EQ(keyFor(fd(), hidCapsLockScancode), KEY_CAPSLOCK);
}

TEST_F(HidutilOnUsbKeyboard, refusalsPrintOneErrorLineAndChangeNothing) {
    // The arguments, a prefix to the command, a piece of the reason.
    const std::tuple<std::string, std::string, const char*> cases[] = {
        {"property --get UserKeyMapping", "", "usage"},
        {"property --set '" + remapText(0x82) + "'", "", "no Linux key"},
        {"property --set '" + remapText(0x29) + "'", "setpriv --reuid=65534 --regid=65534 --clear-groups ", "Permission denied"},
    };
    for (const auto& [arguments, prefix, reason] : cases) {
        const auto [status, output] = runTool(arguments, prefix);
        EXPECT_NE(status, 0) << arguments;
        EXPECT_EQ(output.rfind("error: ", 0), 0u) << output;
        EXPECT_EQ(output.find('\n'), output.size() - 1) << output;
        EXPECT_NE(output.find(reason), std::string::npos) << output;
        EXPECT_EQ(keyFor(fd(), hidCapsLockScancode), KEY_CAPSLOCK);
    }
}

}  // namespace
