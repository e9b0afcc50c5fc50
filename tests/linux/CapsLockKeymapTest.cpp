// The HID tool's property text, each keyboard's step, the state with no keyboard at all, and the state
// file against what another user or a broken run can leave in its place. The keymaps of real keyboards
// are checked inside a kernel (tests/kernel/HidutilKeymapTest.cpp).
#include "platform/linux/CapsLockKeymap.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <functional>

using namespace orvane;
namespace fs = std::filesystem;

static std::string entry(const std::string& source, const std::string& destination) {
    return R"({"HIDKeyboardModifierMappingSrc":)" + source + R"(,"HIDKeyboardModifierMappingDst":)" + destination + "}";
}
static std::string property(const std::string& entries) { return R"({"UserKeyMapping":[)" + entries + "]}"; }
static std::string remap(const std::string& from, const std::string& to) { return property(entry(from, to)); }
static std::string contents(const fs::path& path) {
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(UserKeyMapping, theStoresTextsAreReadAndEverythingElseRefusedWithAReason) {
    const std::string caps = "30064771129";
    // The text; the key Caps Lock becomes (0: cleared); a piece of the reason, when refused.
    const std::tuple<std::string, std::uint16_t, const char*> cases[] = {
        {R"({"UserKeyMapping":[]})", 0, nullptr},
        {remap(caps, "30064771113"), KEY_ESC, nullptr},
        {remap(caps, caps), KEY_CAPSLOCK, nullptr},
        {R"({"UserKeyMapping":[]}x)", 0, "not JSON"},
        {remap(caps, "5e333"), 0, "not JSON"},
        {R"({"UserKeyMapping":[],"Other":1})", 0, "UserKeyMapping"},
        {R"({"UserKeyMapping":{}})", 0, "not a list"},
        {R"({"UserKeyMapping":[1]})", 0, "HIDKeyboardModifierMappingSrc"},
        {remap(caps, "-1"), 0, "unsigned integers"},
        {remap("30064771076", "30064771113"), 0, "only Caps Lock"},
        {property(entry(caps, "30064771113") + "," + entry(caps, "30064771181")), 0, "more than one"},
        {remap(caps, "30064771202"), 0, "no Linux key for the HID usage 30064771202"},  // 0x82, Locking Caps Lock
        {remap(caps, "41"), 0, "no Linux key"},                                         // Escape without its page
    };
    for (const auto& [text, target, reason] : cases) {
        SCOPED_TRACE(text);
        std::string error;
        const auto mapping = parseUserKeyMapping(text, error);
        if (reason == nullptr) {
            ASSERT_TRUE(mapping) << error;
            EXPECT_EQ(mapping->capsLockTarget.value_or(0), target);
        } else {
            EXPECT_FALSE(mapping);
            EXPECT_NE(error.find(reason), std::string::npos) << error;
        }
    }
}

TEST(CapsLockKeymap, aKeyboardIsTakenWhileItGivesCapsLockOrWhatWasAppliedToIt) {
    const auto changed = [](std::uint16_t applied) { return ChangedKeyboard{"kbd", KEY_CAPSLOCK, applied}; };
    const ChangedKeyboard escaped = changed(KEY_ESC);
    // The case; the keyboard's Caps Lock key now, what we applied to it, the target, and the step.
    const std::tuple<const char*, std::uint16_t, const ChangedKeyboard*, std::optional<std::uint16_t>, KeyboardStep> cases[] = {
        {"fresh keyboard, mapping set", KEY_CAPSLOCK, nullptr, KEY_ESC, {KEY_ESC, escaped}},
        {"fresh keyboard, cleared", KEY_CAPSLOCK, nullptr, {}, {}},
        {"Caps Lock to itself is recorded too", KEY_CAPSLOCK, nullptr, KEY_CAPSLOCK, {{}, changed(KEY_CAPSLOCK)}},
        {"ours, mapping changed", KEY_ESC, &escaped, KEY_F18, {KEY_F18, changed(KEY_F18)}},
        {"ours, same mapping", KEY_ESC, &escaped, KEY_ESC, {{}, escaped}},
        {"ours, cleared", KEY_ESC, &escaped, {}, {KEY_CAPSLOCK, {}}},
        {"plugged in again (keymap back to its own)", KEY_CAPSLOCK, &escaped, KEY_F18, {KEY_F18, changed(KEY_F18)}},
        {"someone else's Caps Lock", KEY_LEFTCTRL, nullptr, KEY_ESC, {}},
        {"ours once, someone else's now", KEY_LEFTCTRL, &escaped, {}, {}},
    };
    for (const auto& [what, current, known, target, expected] : cases) {
        SCOPED_TRACE(what);
        const KeyboardStep step = planKeyboard("kbd", current, known, target);
        EXPECT_EQ(step.set, expected.set);
        EXPECT_EQ(step.keep, expected.keep);
    }
}

TEST(CapsLockKeymap, withoutKeyboardsTheMappingIsStillSetAndRecordedInAPrivateDirectory) {
    char scratch[] = "/tmp/orvane-keymap-test.XXXXXX";
    ASSERT_NE(mkdtemp(scratch), nullptr);
    const std::filesystem::path root = scratch, noDevices = root / "input", state = root / "runtime" / "state.json";
    std::filesystem::create_directory(noDevices);
    for (const std::optional<std::uint16_t> target : {std::optional<std::uint16_t>(KEY_F18), std::optional<std::uint16_t>()}) {
        EXPECT_TRUE(setCapsLockMapping(target, state, noDevices).ok);
        EXPECT_EQ(loadKeymapState(state).capsLockTarget, target);
    }
    EXPECT_EQ(std::filesystem::status(state.parent_path()).permissions(), std::filesystem::perms::owner_all);
    std::ofstream(state) << "{\"capsLockTarget\":1";  // a torn file reads as no state at all
    EXPECT_FALSE(loadKeymapState(state).capsLockTarget);
    EXPECT_FALSE(setCapsLockMapping(KEY_ESC, root / "missing" / "deeper" / "still" / "state.json", noDevices).ok);
    std::filesystem::remove_all(root);
}

TEST(KeymapStateFile, whatStandsInItsPlaceIsRefusedWithOneLineOrNeverFollowed) {
    char scratch[] = "/tmp/orvane-state-test.XXXXXX";
    ASSERT_NE(mkdtemp(scratch), nullptr);
    const fs::path root = scratch, noDevices = root / "input", runtime = root / "runtime", state = runtime / "state.json";
    const fs::path victim = root / "victim";
    fs::create_directory(noDevices);
    // What is planted; a piece of the error, or none when the mapping is set without harm to `victim`.
    const std::tuple<const char*, std::function<void()>, const char*> cases[] = {
        {"a FIFO as the state", [&] { mkfifo(state.c_str(), 0600); }, "not a regular file"},
        {"a FIFO as the lock", [&] { mkfifo((state.string() + ".lock").c_str(), 0600); }, "not a regular file"},
        {"a link as the lock", [&] { fs::create_symlink(victim, state.string() + ".lock"); }, "cannot open"},
        {"a state that is not one", [&] { std::ofstream(state) << R"({"capsLockTarget":1)"; }, "cannot be read"},
        {"a folder others may write in", [&] { fs::permissions(runtime, fs::perms::all); }, "written by other users"},
        {"a link at the old temporary name", [&] { fs::create_symlink(victim, state.string() + ".tmp"); }, nullptr},
    };
    for (const auto& [what, plant, reason] : cases) {
        SCOPED_TRACE(what);
        fs::remove_all(runtime);
        fs::create_directory(runtime);
        fs::permissions(runtime, fs::perms::owner_all);
        std::ofstream(victim) << "precious";
        plant();
        const std::string before = fs::is_regular_file(state) ? contents(state) : "";
        const KeymapResult result = setCapsLockMapping(KEY_ESC, state, noDevices);
        EXPECT_EQ(contents(victim), "precious");
        EXPECT_EQ(result.ok, reason == nullptr) << result.error;
        if (reason == nullptr) continue;
        EXPECT_NE(result.error.find(reason), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), std::string::npos);
        EXPECT_TRUE(before.empty() || contents(state) == before);
    }
    fs::remove_all(root);
}
