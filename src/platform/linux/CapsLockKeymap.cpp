#include "platform/linux/CapsLockKeymap.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace orvane {
namespace {

// Call with errno read right after the failing call.
std::string systemError(const std::string& what, int error) { return what + ": " + std::strerror(error); }

const ChangedKeyboard* find(const std::vector<ChangedKeyboard>& keyboards, const std::string& device) {
    const auto found = std::find_if(keyboards.begin(), keyboards.end(), [&](const auto& k) { return k.device == device; });
    return found == keyboards.end() ? nullptr : &*found;
}

// One device (named `device` in the state) through planKeyboard: sets its key and appends the entry
// to keep to `kept`.
std::optional<std::string> stepDevice(int fd, const std::string& path, const std::string& device,
                                      const std::vector<ChangedKeyboard>& known, std::optional<std::uint16_t> target,
                                      std::vector<ChangedKeyboard>& kept) {
    const auto current = capsLockEntry(fd);
    if (!current) return std::nullopt;
    const ChangedKeyboard* entry = find(known, device);
    KeyboardStep step = planKeyboard(device, current->key, entry, target);
    if (step.set && !setKeyForScancode(fd, current->scancode, *step.set)) {
        const int failure = errno;
        if (entry && current->key == entry->applied) kept.push_back(*entry);  // unchanged, still ours
        return systemError("cannot change the keymap of " + path, failure);
    }
    if (step.keep) {
        step.keep->scancode = current->scancode;
        kept.push_back(*step.keep);
    }
    return std::nullopt;
}

}  // namespace

KeymapResult setCapsLockMapping(std::optional<std::uint16_t> target, const std::filesystem::path& statePath,
                                const std::filesystem::path& inputDirectory) {
    std::optional<UniqueFd> lock;
    if (auto error = prepareStateDirectory(statePath.parent_path())) return {false, *error};
    if (auto error = lockKeymapState(statePath, lock)) return {false, *error};
    const KeymapState before = loadKeymapState(statePath);

    std::vector<std::string> errors;
    KeymapState after{target, {}};
    std::vector<std::string> seen;
    std::error_code listing;
    for (const auto& file : std::filesystem::directory_iterator(inputDirectory, listing)) {
        const std::string path = file.path().string();
        if (!file.path().filename().string().starts_with("event")) continue;
        const UniqueFd device(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        if (device.get() < 0) {
            // Gone since the listing: nothing to change there.
            const int failure = errno;
            if (failure != ENOENT && failure != ENODEV && failure != ENXIO)
                errors.push_back(systemError("cannot open " + path, failure));
            continue;
        }
        seen.push_back(keyboardIdentity(device.get()));
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

    if (auto error = saveKeymapState(statePath, after)) errors.push_back(*error);
    if (errors.empty()) return {};
    std::string line = errors.front();
    for (std::size_t i = 1; i < errors.size(); ++i) line += "; " + errors[i];
    return {false, line};
}

KeymapResult applyCapsLockMappingInForce(int fd, const std::filesystem::path& statePath) {
    // No state file: nothing was ever set, so nothing is in force.
    if (!std::filesystem::exists(statePath)) return {};
    if (!capsLockEntry(fd)) return {};
    std::optional<UniqueFd> lock;
    if (auto error = lockKeymapState(statePath, lock)) return {false, *error};
    KeymapState state = loadKeymapState(statePath);
    const std::string device = keyboardIdentity(fd);
    std::vector<ChangedKeyboard> kept;
    const auto error = stepDevice(fd, "the new keyboard", device, state.keyboards, state.capsLockTarget, kept);
    const std::size_t before = state.keyboards.size();
    std::erase_if(state.keyboards, [&](const ChangedKeyboard& keyboard) { return keyboard.device == device; });
    if (kept.empty() && state.keyboards.size() == before) return {!error, error.value_or("")};
    state.keyboards.insert(state.keyboards.end(), kept.begin(), kept.end());
    if (auto saveError = saveKeymapState(statePath, state)) return {false, error ? *error + "; " + *saveError : *saveError};
    return {!error, error.value_or("")};
}

}  // namespace orvane
