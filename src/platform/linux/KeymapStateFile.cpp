#include "platform/linux/KeymapStateFile.h"

#include "platform/linux/PrivateFolder.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace orvane {
namespace {

using nlohmann::json;

// A state names a handful of keyboards; anything much larger is not one.
constexpr std::size_t maxStateBytes = 1 << 20;

// Call with errno read right after the failing call.
std::string systemError(const std::string& what, int error) { return what + ": " + std::strerror(error); }

json encode(const KeymapState& state) {
    json keyboards = json::array();
    for (const auto& keyboard : state.keyboards) {
        json entry = {{"device", keyboard.device}, {"scancode", keyboard.scancode}, {"original", keyboard.original},
                      {"applied", keyboard.applied}};
        if (keyboard.replacing) entry["replacing"] = *keyboard.replacing;
        keyboards.push_back(entry);
    }
    return {{"capsLockTarget", state.capsLockTarget ? json(*state.capsLockTarget) : json(nullptr)}, {"keyboards", keyboards}};
}

KeymapState decode(const std::string& text) {
    const json document = json::parse(text);
    KeymapState state;
    if (!document.at("capsLockTarget").is_null()) state.capsLockTarget = document.at("capsLockTarget").get<std::uint16_t>();
    for (const json& keyboard : document.at("keyboards")) {
        ChangedKeyboard entry{keyboard.at("device").get<std::string>(), keyboard.at("original").get<std::uint16_t>(),
                              keyboard.at("applied").get<std::uint16_t>(), keyboard.value("scancode", hidCapsLockScancode)};
        if (keyboard.contains("replacing")) entry.replacing = keyboard.at("replacing").get<std::uint16_t>();
        state.keyboards.push_back(entry);
    }
    return state;
}

// Opens a file that must be a regular one without waiting on it or following a link.
int openRegular(const std::string& path, int flags, std::string& error) {
    const int fd = ::open(path.c_str(), flags | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (fd < 0) {
        error = systemError("cannot open " + path, errno);
        return -1;
    }
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        error = path + " is not a regular file";
        return -1;
    }
    return fd;
}

}  // namespace

std::filesystem::path defaultKeymapStatePath() {
    if (const auto runtime = runtimeFolder(); !runtime.empty()) return runtime / "orvane-hidutil.json";
    return userCacheFolder() / "orvane-hidutil" / "state.json";
}

std::optional<KeymapState> readKeymapState(const std::filesystem::path& statePath, std::string& error) {
    struct stat status {};
    if (::lstat(statePath.c_str(), &status) != 0 && errno == ENOENT) return KeymapState{};
    const UniqueFd file(openRegular(statePath.string(), O_RDONLY, error));
    if (file.get() < 0) return std::nullopt;
    std::string text;
    char chunk[4096];
    for (ssize_t got; (got = ::read(file.get(), chunk, sizeof chunk)) != 0;) {
        if (got < 0) {
            if (errno == EINTR) continue;
            error = systemError("cannot read " + statePath.string(), errno);
            return std::nullopt;
        }
        text.append(chunk, static_cast<std::size_t>(got));
        if (text.size() > maxStateBytes) break;
    }
    try {
        if (text.size() > maxStateBytes) throw std::length_error("larger than 1 MiB");
        return decode(text);
    } catch (const std::exception& failure) {
        error = "the state " + statePath.string() + " cannot be read (" + failure.what() + "); it is left as it is";
        return std::nullopt;
    }
}

KeymapState loadKeymapState(const std::filesystem::path& statePath) {
    std::string ignored;
    return readKeymapState(statePath, ignored).value_or(KeymapState{});
}

std::optional<std::string> saveKeymapState(const std::filesystem::path& statePath, const KeymapState& state) {
    std::string temporary = statePath.string() + ".XXXXXX";
    const std::string text = encode(state).dump() + '\n';
    const UniqueFd file(::mkostemp(temporary.data(), O_CLOEXEC));  // a new file of its own, mode 0600
    if (file.get() < 0) return systemError("cannot create a file beside " + statePath.string(), errno);
    if (::write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) || ::fsync(file.get()) != 0 ||
        std::rename(temporary.c_str(), statePath.c_str()) != 0) {
        const auto error = systemError("cannot write " + statePath.string(), errno);
        ::unlink(temporary.c_str());
        return error;
    }
    return std::nullopt;
}

std::optional<std::string> lockKeymapState(const std::filesystem::path& statePath, std::optional<UniqueFd>& lock) {
    std::string error;
    lock.emplace(openRegular(statePath.string() + ".lock", O_RDWR | O_CREAT, error));
    if (lock->get() < 0) return error;
    while (::flock(lock->get(), LOCK_EX) != 0)
        if (errno != EINTR) return systemError("cannot lock " + statePath.string() + ".lock", errno);
    return std::nullopt;
}

}  // namespace orvane
