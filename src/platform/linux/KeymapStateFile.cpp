#include "platform/linux/KeymapStateFile.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace orvane {
namespace {

using nlohmann::json;

// Call with errno read right after the failing call.
std::string systemError(const std::string& what, int error) { return what + ": " + std::strerror(error); }

json encode(const KeymapState& state) {
    json keyboards = json::array();
    for (const auto& keyboard : state.keyboards)
        keyboards.push_back({{"device", keyboard.device}, {"scancode", keyboard.scancode}, {"original", keyboard.original},
                             {"applied", keyboard.applied}});
    return {{"capsLockTarget", state.capsLockTarget ? json(*state.capsLockTarget) : json(nullptr)}, {"keyboards", keyboards}};
}

}  // namespace

std::filesystem::path defaultKeymapStatePath() {
    if (const char* runtime = std::getenv("XDG_RUNTIME_DIR"); runtime != nullptr && runtime[0] == '/')
        return std::filesystem::path(runtime) / "orvane-hidutil.json";
    return std::filesystem::path("/tmp") / ("orvane-hidutil-" + std::to_string(::geteuid())) / "state.json";
}

KeymapState loadKeymapState(const std::filesystem::path& statePath) {
    std::ifstream file(statePath);
    if (!file) return {};
    std::stringstream text;
    text << file.rdbuf();
    try {
        const json document = json::parse(text.str());
        KeymapState state;
        if (!document.at("capsLockTarget").is_null()) state.capsLockTarget = document.at("capsLockTarget").get<std::uint16_t>();
        for (const json& keyboard : document.at("keyboards"))
            state.keyboards.push_back({keyboard.at("device").get<std::string>(), keyboard.at("original").get<std::uint16_t>(),
                                       keyboard.at("applied").get<std::uint16_t>(),
                                       keyboard.value("scancode", hidCapsLockScancode)});
        return state;
    } catch (const json::exception&) {
        return {};
    }
}

std::optional<std::string> saveKeymapState(const std::filesystem::path& statePath, const KeymapState& state) {
    const std::string temporary = statePath.string() + ".tmp";
    const std::string text = encode(state).dump() + '\n';
    const UniqueFd file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (file.get() < 0) return systemError("cannot write " + temporary, errno);
    if (::write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) || ::fsync(file.get()) != 0)
        return systemError("cannot write " + temporary, errno);
    if (std::rename(temporary.c_str(), statePath.c_str()) != 0) return systemError("cannot replace " + statePath.string(), errno);
    return std::nullopt;
}

std::optional<std::string> prepareStateDirectory(const std::filesystem::path& directory) {
    if (::mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST)
        return systemError("cannot create " + directory.string(), errno);
    struct stat status {};
    if (::lstat(directory.c_str(), &status) != 0) return systemError("cannot read " + directory.string(), errno);
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid())
        return directory.string() + " is not a directory of this user's own";
    return std::nullopt;
}

std::optional<std::string> lockKeymapState(const std::filesystem::path& statePath, std::optional<UniqueFd>& lock) {
    const std::string lockPath = statePath.string() + ".lock";
    lock.emplace(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (lock->get() < 0) return systemError("cannot open " + lockPath, errno);
    while (::flock(lock->get(), LOCK_EX) != 0)
        if (errno != EINTR) return systemError("cannot lock " + lockPath, errno);
    return std::nullopt;
}

}  // namespace orvane
