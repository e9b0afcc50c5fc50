#include "platform/linux/CapsLockKeymap.h"

#include "platform/linux/PrivateFolder.h"

#include <fcntl.h>
#include <linux/input-event-codes.h>

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

// One keyboard put through planKeyboard, its device still open.
struct Plan {
    UniqueFd fd;
    std::string path;  // for error lines
    std::string device;
    CapsLockEntry entry;
    std::optional<ChangedKeyboard> known;
    KeyboardStep step;
};

std::optional<Plan> plan(UniqueFd fd, std::string path, const KeymapState& before, std::optional<std::uint16_t> target) {
    const auto entry = capsLockEntry(fd.get());
    if (!entry) return std::nullopt;
    std::string device = keyboardIdentity(fd.get());
    const ChangedKeyboard* known = find(before.keyboards, device);
    KeyboardStep step = planKeyboard(device, entry->key, known, target);
    if (step.keep) step.keep->scancode = entry->scancode;
    return Plan{std::move(fd), std::move(path), std::move(device), *entry,
                known ? std::optional<ChangedKeyboard>(*known) : std::nullopt, std::move(step)};
}

// Carries the plans out on top of `kept` (entries of keyboards not planned). Every keyboard about to
// change is first recorded as changed while it may still give its old key, so that a run killed at
// any point leaves no changed keyboard the record cannot restore; the record after the changes says
// what each keyboard gives.
void carryOut(std::vector<Plan>& plans, const std::filesystem::path& statePath, std::optional<std::uint16_t> target,
              const std::vector<ChangedKeyboard>& kept, std::vector<std::string>& errors) {
    KeymapState intent{target, kept}, after{target, kept};
    for (const Plan& p : plans) {
        if (p.step.set) {
            const std::uint16_t original = p.step.keep ? p.step.keep->original : *p.step.set;  // a clear sets the original
            intent.keyboards.push_back({p.device, original, *p.step.set, p.entry.scancode, p.entry.key});
        } else if (p.step.keep) {
            intent.keyboards.push_back(*p.step.keep);
        }
    }
    const bool changing = std::any_of(plans.begin(), plans.end(), [](const Plan& p) { return p.step.set.has_value(); });
    if (changing) {
        if (auto error = saveKeymapState(statePath, intent)) {
            errors.push_back(*error);  // no keymap changes before its change is on record
            return;
        }
    }
    for (const Plan& p : plans) {
        if (p.step.set && !setKeyForScancode(p.fd.get(), p.entry.scancode, *p.step.set)) {
            errors.push_back(systemError("cannot change the keymap of " + p.path, errno));
            // Unchanged: still ours if it was.
            if (p.known && (p.entry.key == p.known->applied || p.entry.key == p.known->replacing))
                after.keyboards.push_back({p.device, p.known->original, p.entry.key, p.entry.scancode});
            continue;
        }
        if (p.step.keep) after.keyboards.push_back(*p.step.keep);
    }
    if (auto error = saveKeymapState(statePath, after)) errors.push_back(*error);
}

KeymapResult resultOf(const std::vector<std::string>& errors) {
    if (errors.empty()) return {};
    std::string line = errors.front();
    for (std::size_t i = 1; i < errors.size(); ++i) line += "; " + errors[i];
    return {false, line};
}

}  // namespace

KeymapResult setCapsLockMapping(std::optional<std::uint16_t> target, const std::filesystem::path& statePath,
                                const std::filesystem::path& inputDirectory) {
    std::optional<UniqueFd> lock;
    if (auto error = makePrivateFolder(statePath.parent_path())) return {false, *error};
    if (auto error = lockKeymapState(statePath, lock)) return {false, *error};
    std::string readError;
    const auto before = readKeymapState(statePath, readError);
    if (!before) return {false, readError};

    std::vector<std::string> errors;
    std::vector<Plan> plans;
    std::vector<std::string> seen;
    std::error_code listing;
    for (const auto& file : std::filesystem::directory_iterator(inputDirectory, listing)) {
        const std::string path = file.path().string();
        if (!file.path().filename().string().starts_with("event")) continue;
        UniqueFd device(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        if (device.get() < 0) {
            // Gone since the listing: nothing to change there.
            const int failure = errno;
            if (failure != ENOENT && failure != ENODEV && failure != ENXIO)
                errors.push_back(systemError("cannot open " + path, failure));
            continue;
        }
        seen.push_back(keyboardIdentity(device.get()));
        if (auto planned = plan(std::move(device), path, *before, target)) plans.push_back(std::move(*planned));
    }
    if (listing && listing != std::errc::no_such_file_or_directory)
        errors.push_back("cannot list " + inputDirectory.string() + ": " + listing.message());
    // Keyboards not seen are gone (a keyboard plugged in again starts from its own keymap), unless
    // some device could not be opened: it may be one of them.
    std::vector<ChangedKeyboard> unseen;
    if (!errors.empty())
        for (const auto& keyboard : before->keyboards)
            if (std::find(seen.begin(), seen.end(), keyboard.device) == seen.end()) unseen.push_back(keyboard);
    carryOut(plans, statePath, target, unseen, errors);
    return resultOf(errors);
}

KeymapResult applyCapsLockMappingInForce(int fd, const std::filesystem::path& statePath) {
    // No state file: nothing was ever set, so nothing is in force.
    if (!std::filesystem::exists(statePath)) return {};
    if (!capsLockEntry(fd)) return {};
    std::optional<UniqueFd> lock;
    if (auto error = lockKeymapState(statePath, lock)) return {false, *error};
    std::string readError;
    const auto state = readKeymapState(statePath, readError);
    if (!state) return {false, readError};
    auto planned = plan(UniqueFd(::dup(fd)), "the new keyboard", *state, state->capsLockTarget);
    if (!planned || (!planned->step.set && planned->step.keep == (planned->known ? planned->known : std::nullopt)))
        return {};  // nothing to change or to record
    std::vector<ChangedKeyboard> others = state->keyboards;
    std::erase_if(others, [&](const ChangedKeyboard& keyboard) { return keyboard.device == planned->device; });
    std::vector<Plan> plans;
    plans.push_back(std::move(*planned));
    std::vector<std::string> errors;
    carryOut(plans, statePath, state->capsLockTarget, others, errors);
    return resultOf(errors);
}

}  // namespace orvane
