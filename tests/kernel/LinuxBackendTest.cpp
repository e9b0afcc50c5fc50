// The real Linux event system inside a real kernel: a uinput "physical" keyboard in, Orvane's
// output device read back as applications read it. Runs through kernel-vm.sh; skips anywhere else.
#include "EvdevSupport.h"
#include "FakeHidutil.h"
#include "Mappings.h"
#include "PrintedLines.h"
#include "interception/EventTapManager.h"
#include "interception/KeyRecorder.h"
#include "platform/linux/EvdevKeyboards.h"
#include "platform/linux/LinuxEventSystem.h"
#include "platform/linux/UinputKeyboard.h"
#include "store/MappingStore.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTest>

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <algorithm>
#include <utility>
#include <vector>

using namespace orvane;
using namespace orvane::testing;

namespace {

using Keys = std::vector<std::pair<int, int>>;  // (code, value)

// A keyboard made through uinput: to the backend it is hardware.
class PhysicalKeyboard {
public:
    explicit PhysicalKeyboard(const char* name) {
        libevdev* model = libevdev_new();
        libevdev_set_name(model, name);
        for (unsigned code = KEY_ESC; code <= KEY_KPDOT; ++code) libevdev_enable_event_code(model, EV_KEY, code, nullptr);
        for (const unsigned code : {KEY_LEFTMETA, KEY_RIGHTMETA, KEY_VOLUMEUP, KEY_VOLUMEDOWN, KEY_MUTE, KEY_F13, KEY_F18})
            libevdev_enable_event_code(model, EV_KEY, code, nullptr);
        libevdev_uinput_create_from_device(model, LIBEVDEV_UINPUT_OPEN_MANAGED, &device_);
        libevdev_free(model);
    }
    ~PhysicalKeyboard() { unplug(); }
    bool exists() const { return device_ != nullptr; }
    void type(const Keys& keys) {
        for (const auto& [code, value] : keys) {
            libevdev_uinput_write_event(device_, EV_KEY, static_cast<unsigned>(code), value);
            libevdev_uinput_write_event(device_, EV_SYN, SYN_REPORT, 0);
        }
    }
    void unplug() { if (device_) libevdev_uinput_destroy(std::exchange(device_, nullptr)); }

private:
    libevdev_uinput* device_ = nullptr;
};

// Reads a device as an application does.
class Reader {
public:
    explicit Reader(const std::string& devnode) : device_(kerneltest::openEventDevice(devnode)) {}
    bool isOpen() const { return device_ != nullptr; }
    libevdev* device() const { return device_.get(); }
    // Key events until `count` arrived or none came for a while; the event loop runs meanwhile.
    Keys keys(std::size_t count) {
        Keys keys;
        QElapsedTimer quiet;
        quiet.start();
        while (keys.size() < count && quiet.elapsed() < 3000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            input_event event{};
            for (int status; (status = libevdev_next_event(device(), LIBEVDEV_READ_FLAG_NORMAL, &event)) >= 0;) {
                if (status != LIBEVDEV_READ_STATUS_SUCCESS || event.type != EV_KEY) continue;
                keys.emplace_back(event.code, event.value);
                quiet.restart();
            }
            ::usleep(5000);
        }
        return keys;
    }

private:
    kerneltest::Evdev device_;
};

// The real devices and event system under the real store and tap manager, with one HID tool.
struct Backend {
    QTemporaryDir dir;
    UinputKeyboard output;
    EvdevKeyboards input{output.devnode()};
    LinuxEventSystem events{input, output, [] { return true; }};
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    MappingStore store;
    EventTapManager manager{events, store};

    Backend(const QString& hidTool, std::vector<KeyMapping> mappings) : store(*defaults, HIDUtil(hidTool)) {
        store.setMappings(std::move(mappings)), store.waitForCapsLockDecisions();
    }
};

struct RealBackend : ::testing::Test {
    PrintedLines lines;
    FakeHidutil tool;
    std::unique_ptr<PhysicalKeyboard> keyboard;
    std::unique_ptr<Backend> backend;
    std::unique_ptr<Reader> applications;

    void SetUp() override {
        if (!std::getenv("ORVANE_KERNEL_VM") || ::access("/dev/uinput", W_OK) != 0)
            GTEST_SKIP() << "needs the kernel machine of tools/kernel-vm";
        keyboard = std::make_unique<PhysicalKeyboard>("Test keyboard");
        ASSERT_TRUE(keyboard->exists());
        use(tool.path(), oneOfEachKind());
    }
    // A new backend (a new output device) in place of the running one.
    void use(const QString& hidTool, std::vector<KeyMapping> mappings) {
        applications.reset(), backend.reset();
        backend = std::make_unique<Backend>(hidTool, std::move(mappings));
        ASSERT_TRUE(backend->output.isCreated());
        applications = std::make_unique<Reader>(backend->output.devnode());
        ASSERT_TRUE(applications->isOpen());
    }
    EventTapManager& manager() { return backend->manager; }
    Keys typeAndRead(const Keys& keys, std::size_t expected) { return keyboard->type(keys), applications->keys(expected); }
};

}  // namespace

TEST_F(RealBackend, applicationsReceiveWhatTheMappingsMake) {
    ASSERT_TRUE(manager().start());
    EXPECT_EQ(typeAndRead({{KEY_F1, 1}, {KEY_F1, 0}}, 6),
              (Keys{{KEY_LEFTSHIFT, 1}, {KEY_LEFTMETA, 1}, {KEY_K, 1}, {KEY_K, 0}, {KEY_LEFTSHIFT, 0}, {KEY_LEFTMETA, 0}}));
    EXPECT_EQ(typeAndRead({{KEY_VOLUMEUP, 1}, {KEY_VOLUMEUP, 0}}, 2), (Keys{{KEY_F13, 1}, {KEY_F13, 0}}));
}

TEST_F(RealBackend, keyboardsAreGrabbedButNeverTheOutputAndStoppingReleasesAHeldKey) {
    ASSERT_TRUE(manager().start());
    EXPECT_EQ(typeAndRead({{KEY_A, 1}}, 1), (Keys{{KEY_B, 1}}));
    // Our own device is free for anyone to take.
    EXPECT_EQ(libevdev_grab(applications->device(), LIBEVDEV_GRAB), 0);
    libevdev_grab(applications->device(), LIBEVDEV_UNGRAB);
    manager().stop();
    EXPECT_EQ(applications->keys(1), (Keys{{KEY_B, 0}}));
    EXPECT_TRUE(typeAndRead({{KEY_A, 0}}, 1).empty());
}

TEST_F(RealBackend, aKeyboardPluggedInLaterIsInterceptedAndUnpluggingItReleasesItsKeys) {
    ASSERT_TRUE(manager().start());
    PhysicalKeyboard second("Second test keyboard");
    ASSERT_TRUE(second.exists());
    QTest::qWait(1000);  // the hot-plug announcement
    second.type({{KEY_A, 1}});
    EXPECT_EQ(applications->keys(1), (Keys{{KEY_B, 1}}));
    second.unplug();
    EXPECT_EQ(applications->keys(1), (Keys{{KEY_B, 0}}));
}

// The listen-only capture over the same event system: tests/linux.
TEST_F(RealBackend, theRecorderSeesRealKeys) {
    std::optional<RecordedKey> recorded;
    KeyRecorder recorder(backend->events, /*allowModifiers=*/true, false, [&](const RecordedKey& key) { recorded = key; });
    recorder.start();
    // The key is swallowed; the modifier goes on as modifiers do while recording.
    EXPECT_EQ(typeAndRead({{KEY_LEFTSHIFT, 1}, {KEY_X, 1}, {KEY_X, 0}, {KEY_LEFTSHIFT, 0}}, 4),
              (Keys{{KEY_LEFTSHIFT, 1}, {KEY_LEFTSHIFT, 0}}));
    ASSERT_TRUE(recorded);
    EXPECT_EQ(recorded->label(), "\u21E7X");
    recorder.stop();
}

// The HID layer on the emulated USB keyboard: orvane-hidutil turns Caps Lock into Escape in the
// kernel's keymap, or into F18, which the taps turn into a combination.
TEST_F(RealBackend, capsLockOnAUsbKeyboardThroughTheHidTool) {
    const char* hidTool = std::getenv("ORVANE_HIDUTIL");
    if (!hidTool) GTEST_SKIP() << "needs ORVANE_HIDUTIL";
    ASSERT_TRUE(kerneltest::findUsbKeyboard());
    QTest::qWait(500);  // the keyboard may have come after the start: its hot-plug announcement
    use(QString::fromLocal8Bit(hidTool), {mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    const auto pressCapsLock = [&](std::size_t expected) {
        kerneltest::askHostTo("press", "caps_lock");
        kerneltest::askHostTo("release", "caps_lock");
        return applications->keys(expected);
    };
    ASSERT_TRUE(manager().start());
    backend->store.waitForCapsLockDecisions();
    EXPECT_EQ(pressCapsLock(2), (Keys{{KEY_ESC, 1}, {KEY_ESC, 0}}));

    backend->store.setMappings(
        {mapping(KeyCode::capsLock, TargetAction::combination(KeyCode::k, {.command = true, .shift = true}))});
    backend->store.waitForCapsLockDecisions();
    QTest::qWait(200);
    EXPECT_EQ(pressCapsLock(6), (Keys{{KEY_LEFTSHIFT, 1}, {KEY_LEFTMETA, 1}, {KEY_K, 1}, {KEY_K, 0}, {KEY_LEFTSHIFT, 0}, {KEY_LEFTMETA, 0}}));
    manager().stop();  // Caps Lock is itself again, and the keyboard reaches applications directly
    EXPECT_TRUE(std::count(lines.begin(), lines.end(), "HIDUtil: Cleared HID remapping, Caps Lock restored")) << lines.size();
}
