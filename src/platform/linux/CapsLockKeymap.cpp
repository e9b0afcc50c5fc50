#include "platform/linux/CapsLockKeymap.h"

#include "platform/linux/HidUsageTable.h"

#include <nlohmann/json.hpp>

#include <fcntl.h>
#include <linux/input.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

namespace orvane {
namespace {

using nlohmann::json;

constexpr std::uint64_t keyboardPage = 0x7;
constexpr std::uint64_t capsLockUsage = keyboardPage << 32 | 0x39;

// Call with errno read right after the failing call.
std::string systemError(const std::string& what, int error) { return what + ": " + std::strerror(error); }

// A usage as the tool takes it: a non-negative integer (nlohmann reads big ones as unsigned).
std::optional<std::uint64_t> usageField(const json& entry, const char* name) {
    const auto field = entry.find(name);
    if (field == entry.end() || !field->is_number_integer()) return std::nullopt;
    if (field->is_number_unsigned()) return field->get<std::uint64_t>();
    const auto value = field->get<std::int64_t>();
    return value < 0 ? std::nullopt : std::optional<std::uint64_t>(static_cast<std::uint64_t>(value));
}

// The key Caps Lock's scancode gives on this device; none when it has no such scancode (not a HID
// keyboard, or not an event device at all).
std::optional<std::uint16_t> capsLockKey(int fd) {
    input_keymap_entry entry{};
    entry.len = sizeof(capsLockScancode);
    std::memcpy(entry.scancode, &capsLockScancode, sizeof(capsLockScancode));
    if (::ioctl(fd, EVIOCGKEYCODE_V2, &entry) != 0) return std::nullopt;
    return static_cast<std::uint16_t>(entry.keycode);
}

bool setCapsLockKey(int fd, std::uint16_t key) {
    input_keymap_entry entry{};
    entry.len = sizeof(capsLockScancode);
    std::memcpy(entry.scancode, &capsLockScancode, sizeof(capsLockScancode));
    entry.keycode = key;
    return ::ioctl(fd, EVIOCSKEYCODE_V2, &entry) == 0;
}

// The device's name in the state: input id, name, physical path, unique id.
std::string deviceName(int fd) {
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

class FileDescriptor {
public:
    explicit FileDescriptor(int fd) : fd_(fd) {}
    ~FileDescriptor() {
        if (fd_ >= 0) ::close(fd_);
    }
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    int get() const { return fd_; }

private:
    int fd_;
};

// The state's directory exists and is the user's own; created (mode 0700) when missing, so that a
// directory under /tmp that someone else made is never used.
std::optional<std::string> prepareStateDirectory(const std::filesystem::path& directory) {
    if (::mkdir(directory.c_str(), 0700) != 0 && errno != EEXIST)
        return systemError("cannot create " + directory.string(), errno);
    struct stat status {};
    if (::lstat(directory.c_str(), &status) != 0) return systemError("cannot read " + directory.string(), errno);
    if (!S_ISDIR(status.st_mode) || status.st_uid != ::geteuid())
        return directory.string() + " is not a directory of this user's own";
    return std::nullopt;
}

// Holds an exclusive lock on "<state>.lock" for the life of the object.
std::optional<std::string> lockState(const std::filesystem::path& statePath, std::optional<FileDescriptor>& lock) {
    const std::string lockPath = statePath.string() + ".lock";
    lock.emplace(::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
    if (lock->get() < 0) return systemError("cannot open " + lockPath, errno);
    while (::flock(lock->get(), LOCK_EX) != 0)
        if (errno != EINTR) return systemError("cannot lock " + lockPath, errno);
    return std::nullopt;
}

json encode(const KeymapState& state) {
    json keyboards = json::array();
    for (const auto& keyboard : state.keyboards)
        keyboards.push_back({{"device", keyboard.device}, {"original", keyboard.original}, {"applied", keyboard.applied}});
    return {{"capsLockTarget", state.capsLockTarget ? json(*state.capsLockTarget) : json(nullptr)}, {"keyboards", keyboards}};
}

// Written whole: a temporary file beside it, flushed to disk, renamed over it.
std::optional<std::string> saveState(const std::filesystem::path& statePath, const KeymapState& state) {
    const std::string temporary = statePath.string() + ".tmp";
    const std::string text = encode(state).dump() + '\n';
    const FileDescriptor file(::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (file.get() < 0) return systemError("cannot write " + temporary, errno);
    if (::write(file.get(), text.data(), text.size()) != static_cast<ssize_t>(text.size()) || ::fsync(file.get()) != 0)
        return systemError("cannot write " + temporary, errno);
    if (std::rename(temporary.c_str(), statePath.c_str()) != 0) return systemError("cannot replace " + statePath.string(), errno);
    return std::nullopt;
}

const ChangedKeyboard* find(const std::vector<ChangedKeyboard>& keyboards, const std::string& device) {
    const auto found = std::find_if(keyboards.begin(), keyboards.end(), [&](const auto& k) { return k.device == device; });
    return found == keyboards.end() ? nullptr : &*found;
}

// One device (named `device` in the state) through planKeyboard: sets its key and appends the entry
// to keep to `kept`.
std::optional<std::string> stepDevice(int fd, const std::string& path, const std::string& device,
                                      const std::vector<ChangedKeyboard>& known, std::optional<std::uint16_t> target,
                                      std::vector<ChangedKeyboard>& kept) {
    const auto current = capsLockKey(fd);
    if (!current) return std::nullopt;
    const ChangedKeyboard* entry = find(known, device);
    const KeyboardStep step = planKeyboard(device, *current, entry, target);
    if (step.set && !setCapsLockKey(fd, *step.set)) {
        const int failure = errno;
        if (entry && *current == entry->applied) kept.push_back(*entry);  // unchanged, still ours
        return systemError("cannot change the keymap of " + path, failure);
    }
    if (step.keep) kept.push_back(*step.keep);
    return std::nullopt;
}

}  // namespace

std::optional<UserKeyMapping> parseUserKeyMapping(std::string_view text, std::string& error) {
    json document;
    try {
        document = json::parse(text);
    } catch (const json::exception&) {
        error = "the property is not JSON";
        return std::nullopt;
    }
    if (!document.is_object() || document.size() != 1 || !document.contains("UserKeyMapping")) {
        error = "only the property UserKeyMapping can be set";
        return std::nullopt;
    }
    const json& entries = document["UserKeyMapping"];
    if (!entries.is_array()) {
        error = "UserKeyMapping is not a list";
        return std::nullopt;
    }
    if (entries.empty()) return UserKeyMapping{};
    if (entries.size() > 1) {
        error = "UserKeyMapping holds more than one mapping; only Caps Lock can be remapped";
        return std::nullopt;
    }
    const json& entry = entries.front();
    const auto source = entry.is_object() ? usageField(entry, "HIDKeyboardModifierMappingSrc") : std::nullopt;
    const auto destination = entry.is_object() ? usageField(entry, "HIDKeyboardModifierMappingDst") : std::nullopt;
    if (!source || !destination) {
        error = "a mapping needs HIDKeyboardModifierMappingSrc and HIDKeyboardModifierMappingDst as unsigned integers";
        return std::nullopt;
    }
    if (*source != capsLockUsage) {
        error = "only Caps Lock (" + std::to_string(capsLockUsage) + ") can be remapped, not " + std::to_string(*source);
        return std::nullopt;
    }
    const auto key =
        *destination >> 32 == keyboardPage ? evdevCodeForUsage(static_cast<std::uint32_t>(*destination)) : std::nullopt;
    if (!key) {
        error = "no Linux key for the HID usage " + std::to_string(*destination);
        return std::nullopt;
    }
    return UserKeyMapping{key};
}

KeyboardStep planKeyboard(const std::string& device, std::uint16_t current, const ChangedKeyboard* known,
                          std::optional<std::uint16_t> target) {
    const bool ours = known != nullptr && current == known->applied;
    if (!ours && current != KEY_CAPSLOCK) return {};
    const std::uint16_t original = ours ? known->original : std::uint16_t{KEY_CAPSLOCK};
    const std::uint16_t wanted = target.value_or(original);
    KeyboardStep step;
    if (wanted != current) step.set = wanted;
    if (target) step.keep = ChangedKeyboard{device, original, *target};
    return step;
}

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
                                       keyboard.at("applied").get<std::uint16_t>()});
        return state;
    } catch (const json::exception&) {
        return {};
    }
}

KeymapResult setCapsLockMapping(std::optional<std::uint16_t> target, const std::filesystem::path& statePath,
                                const std::filesystem::path& inputDirectory) {
    std::optional<FileDescriptor> lock;
    if (auto error = prepareStateDirectory(statePath.parent_path())) return {false, *error};
    if (auto error = lockState(statePath, lock)) return {false, *error};
    const KeymapState before = loadKeymapState(statePath);

    std::vector<std::string> errors;
    KeymapState after{target, {}};
    std::vector<std::string> seen;
    std::error_code listing;
    for (const auto& file : std::filesystem::directory_iterator(inputDirectory, listing)) {
        const std::string path = file.path().string();
        if (!file.path().filename().string().starts_with("event")) continue;
        const FileDescriptor device(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        if (device.get() < 0) {
            // Gone since the listing: nothing to change there.
            const int failure = errno;
            if (failure != ENOENT && failure != ENODEV && failure != ENXIO)
                errors.push_back(systemError("cannot open " + path, failure));
            continue;
        }
        seen.push_back(deviceName(device.get()));
        if (auto error = stepDevice(device.get(), path, seen.back(), before.keyboards, target, after.keyboards))
            errors.push_back(*error);
    }
    if (listing && listing != std::errc::no_such_file_or_directory)
        errors.push_back("cannot list " + inputDirectory.string() + ": " + listing.message());
    // Keyboards not seen are gone (a keyboard plugged in again starts from its own keymap), unless
    // some device could not be opened: it may be one of them.
    if (!errors.empty())
        for (const auto& keyboard : before.keyboards)
            if (std::find(seen.begin(), seen.end(), keyboard.device) == seen.end()) after.keyboards.push_back(keyboard);

    if (auto error = saveState(statePath, after)) errors.push_back(*error);
    if (errors.empty()) return {};
    std::string line = errors.front();
    for (std::size_t i = 1; i < errors.size(); ++i) line += "; " + errors[i];
    return {false, line};
}

KeymapResult applyCapsLockMappingInForce(int fd, const std::filesystem::path& statePath) {
    // No state file: nothing was ever set, so nothing is in force.
    if (!std::filesystem::exists(statePath)) return {};
    if (!capsLockKey(fd)) return {};
    std::optional<FileDescriptor> lock;
    if (auto error = lockState(statePath, lock)) return {false, *error};
    KeymapState state = loadKeymapState(statePath);
    const std::string device = deviceName(fd);
    std::vector<ChangedKeyboard> kept;
    const auto error = stepDevice(fd, "the new keyboard", device, state.keyboards, state.capsLockTarget, kept);
    const std::size_t before = state.keyboards.size();
    std::erase_if(state.keyboards, [&](const ChangedKeyboard& keyboard) { return keyboard.device == device; });
    if (kept.empty() && state.keyboards.size() == before) return {!error, error.value_or("")};
    state.keyboards.insert(state.keyboards.end(), kept.begin(), kept.end());
    if (auto saveError = saveState(statePath, state)) return {false, error ? *error + "; " + *saveError : *saveError};
    return {!error, error.value_or("")};
}

}  // namespace orvane
