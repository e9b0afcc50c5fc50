// orvane-hidutil's state against what another user or a broken run can leave in its place: each is
// refused with one line and left as it is, and nothing blocks or follows a link.
#include "platform/linux/CapsLockKeymap.h"

#include <gtest/gtest.h>

#include <linux/input-event-codes.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>

using namespace orvane;
namespace fs = std::filesystem;

namespace {

std::string contents(const fs::path& path) {
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

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
        if (reason == nullptr) {
            EXPECT_TRUE(result.ok) << result.error;
            continue;
        }
        EXPECT_FALSE(result.ok);
        EXPECT_NE(result.error.find(reason), std::string::npos) << result.error;
        EXPECT_EQ(result.error.find('\n'), std::string::npos);
        EXPECT_TRUE(before.empty() || contents(state) == before);
    }
    fs::remove_all(root);
}
