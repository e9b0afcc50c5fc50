// The Linux event system over fake devices: what reaches applications from real-looking key events,
// through the real tap manager and store.
#include "FakeHidutil.h"
#include "Mappings.h"
#include "PrintedLines.h"
#include "interception/EventCapturer.h"
#include "interception/EventTapManager.h"
#include "platform/linux/LinuxAccessibility.h"
#include "platform/linux/LinuxEventSystem.h"
#include "store/MappingStore.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <linux/input-event-codes.h>

using namespace orvane;

namespace {

using Keys = std::vector<std::pair<int, int>>;  // (code, value)

struct FakeKeyboards final : KeyboardInput {
    Listener* listener = nullptr;
    bool grabbed = false, light = false;
    std::set<KeyboardId> busy;  // held a key when the grab came: not grabbed yet

    void setListener(Listener* l) override { listener = l; }
    void setGrabbed(bool g) override { grabbed = g; }
    bool isGrabbed(KeyboardId keyboard) const override { return grabbed && !busy.contains(keyboard); }
    void setCapsLockLight(bool on) override { light = on; }
};

struct FakeOutput final : KeyboardOutput {
    Keys writes;
    void writeKey(std::uint16_t code, int value) override { writes.emplace_back(code, value); }
};

struct LinuxEventSystemTest : ::testing::Test {
    QTemporaryDir dir;
    orvane::testing::FakeHidutil tool;
    orvane::testing::PrintedLines lines;
    FakeKeyboards keyboards;
    FakeOutput output;
    bool trusted = true;
    LinuxEventSystem events{keyboards, output, [this] { return trusted; }};
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    MappingStore store{*defaults, HIDUtil(tool.path())};
    EventTapManager manager{events, store};

    void SetUp() override { store.setMappings(orvane::testing::oneOfEachKind()), store.waitForCapsLockDecisions(); }

    // Presses or releases keys on a keyboard and answers what the output wrote meanwhile.
    Keys type(const Keys& keys, KeyboardId keyboard = 1) {
        output.writes.clear();
        for (const auto& [code, value] : keys) keyboards.listener->keyEvent(keyboard, static_cast<std::uint16_t>(code), value);
        return output.writes;
    }
};

}  // namespace

TEST_F(LinuxEventSystemTest, interceptingWritesWhatTheMappingsMakeWithExactModifiers) {
    ASSERT_TRUE(manager.start() && keyboards.grabbed);
    const std::pair<Keys, Keys> cases[] = {
        {{{KEY_A, 1}, {KEY_A, 2}, {KEY_A, 0}}, {{KEY_B, 1}, {KEY_B, 2}, {KEY_B, 0}}},
        {{{KEY_Q, 1}, {KEY_Q, 0}}, {}},
        // Shift held by the user stays as it is for an unmapped key.
        {{{KEY_LEFTSHIFT, 1}, {KEY_C, 1}, {KEY_C, 0}, {KEY_LEFTSHIFT, 0}},
         {{KEY_LEFTSHIFT, 1}, {KEY_C, 1}, {KEY_C, 0}, {KEY_LEFTSHIFT, 0}}},
        // A combination is a chord held as long as its source: exactly its modifiers (Control held is
        // let go meanwhile), repeats of the chord, a key typed meanwhile under the chord's modifiers;
        // at its release the user's Control comes back.
        {{{KEY_LEFTCTRL, 1}, {KEY_F1, 1}, {KEY_F1, 2}, {KEY_C, 1}, {KEY_C, 0}, {KEY_F1, 0}, {KEY_LEFTCTRL, 0}},
         {{KEY_LEFTCTRL, 1}, {KEY_LEFTCTRL, 0}, {KEY_LEFTSHIFT, 1}, {KEY_LEFTMETA, 1}, {KEY_K, 1}, {KEY_K, 2}, {KEY_C, 1}, {KEY_C, 0},
          {KEY_K, 0}, {KEY_LEFTSHIFT, 0}, {KEY_LEFTMETA, 0}, {KEY_LEFTCTRL, 1}, {KEY_LEFTCTRL, 0}}},
        // The user's modifier changes under a chord show once it ends; the right Shift held stays the side used.
        {{{KEY_RIGHTSHIFT, 1}, {KEY_F1, 1}, {KEY_LEFTALT, 1}, {KEY_F1, 0}, {KEY_LEFTALT, 0}, {KEY_RIGHTSHIFT, 0}},
         {{KEY_RIGHTSHIFT, 1}, {KEY_LEFTMETA, 1}, {KEY_K, 1}, {KEY_K, 0}, {KEY_LEFTMETA, 0}, {KEY_LEFTALT, 1}, {KEY_LEFTALT, 0},
          {KEY_RIGHTSHIFT, 0}}},
        // Media keys travel as system-defined events, mapped or not; keys outside the catalogue pass.
        {{{KEY_VOLUMEUP, 1}, {KEY_VOLUMEUP, 0}, {KEY_MUTE, 1}, {KEY_MUTE, 0}}, {{KEY_F13, 1}, {KEY_F13, 0}, {KEY_MUTE, 1}, {KEY_MUTE, 0}}},
        // Caps Lock toggles: each press is a whole press on the output, releases are not seen.
        {{{KEY_CAPSLOCK, 1}, {KEY_CAPSLOCK, 0}}, {{KEY_CAPSLOCK, 1}, {KEY_CAPSLOCK, 0}}},
    };
    for (const auto& [keys, expected] : cases) EXPECT_EQ(type(keys), expected) << "first key " << keys.front().first;
}

TEST_F(LinuxEventSystemTest, notInterceptingNothingIsGrabbedOrWrittenAndStoppingReleasesWhatWasHeld) {
    EXPECT_TRUE(!keyboards.grabbed && type({{KEY_A, 1}, {KEY_A, 0}}).empty());  // the keyboard reached applications itself

    ASSERT_TRUE(manager.start());
    EXPECT_EQ(type({{KEY_A, 1}}), (Keys{{KEY_B, 1}}));
    output.writes.clear(), manager.stop();
    EXPECT_EQ(output.writes, (Keys{{KEY_B, 0}}));
    EXPECT_TRUE(!keyboards.grabbed && type({{KEY_A, 0}}).empty());

    trusted = false;
    EXPECT_FALSE(manager.start() || keyboards.grabbed);
}

TEST_F(LinuxEventSystemTest, keyboardsShareKeysAndAGoneKeyboardReleasesWhatItHeld) {
    ASSERT_TRUE(manager.start());
    EXPECT_EQ(type({{KEY_A, 1}}, 1), (Keys{{KEY_B, 1}}));
    EXPECT_EQ(type({{KEY_A, 1}}, 2), (Keys{{KEY_B, 2}}));  // the same key on a second keyboard
    EXPECT_TRUE(type({{KEY_A, 0}}, 1).empty());
    output.writes.clear(), keyboards.listener->keyboardRemoved(2);
    EXPECT_EQ(output.writes, (Keys{{KEY_B, 0}}));

    // A keyboard that still held a key when interception began reaches applications until it is grabbed.
    keyboards.busy.insert(3);
    EXPECT_TRUE(type({{KEY_A, 1}, {KEY_A, 0}}, 3).empty());
}

TEST_F(LinuxEventSystemTest, theDesktopsCapsLockLightReachesKeyboardsAndTheFlagsAndWatchingIsNoInterception) {
    output.onCapsLockLight(true);
    EXPECT_TRUE(keyboards.light);
    EXPECT_EQ(events.createKeyboardEvent(0, true)->flags, EventFlag::alphaShift | EventFlag::nonCoalesced);
    // A listen-only tap (the debugger's capture) sees the keys but takes no keyboard.
    int seen = 0;
    EventCapturer capturer(events, store, manager, [&](const DebugEvent&) { ++seen; }, [] { return true; });
    capturer.start();
    EXPECT_TRUE(!keyboards.grabbed && type({{KEY_A, 1}}).empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(seen, 1);
}

// Installed beside bin/, or in the checkout that holds the build wherever it is, else a name to look for.
TEST(LinuxAccessibilityTest, theInstructionsAreFoundInstalledOrInTheCheckoutAroundTheBuild) {
    QTemporaryDir root;
    const std::pair<const char*, const char*> layouts[] = {{"usr/share/doc/orvane/linux-permissions.md", "usr/bin"},
                                                           {"moved/checkout/docs/linux-permissions.md", "moved/checkout/build/test/src"}};
    for (const auto& [document, applicationDir] : layouts) {
        ASSERT_TRUE(QDir(root.path()).mkpath(QFileInfo(root.filePath(document)).path()) && QDir(root.path()).mkpath(applicationDir));
        ASSERT_TRUE(QFile(root.filePath(document)).open(QIODevice::WriteOnly));
        EXPECT_EQ(LinuxAccessibility::instructionsPath(root.filePath(applicationDir)), QFileInfo(root.filePath(document)).canonicalFilePath().toStdString());
    }
    EXPECT_EQ(LinuxAccessibility::instructionsPath(root.filePath("elsewhere")), "docs/linux-permissions.md");
}
