#include "platform/linux/EvdevKeyTable.h"

#include "platform/linux/HidUsageTable.h"

#include <linux/input-event-codes.h>

#include <array>
#include <utility>

namespace orvane::evdevkeys {
namespace {

// Keys of the catalogue that have no keyboard-page usage.
constexpr std::pair<KeyCode, std::uint16_t> keysWithoutUsage[] = {
    {KeyCode::function, KEY_FN},          {KeyCode::globe, KEY_EMOJI_PICKER},     {KeyCode::dictation, KEY_DICTATE},
    {KeyCode::launchpad, KEY_ALL_APPLICATIONS}, {KeyCode::missionControl, KEY_SCALE},
};

// The media and system keys. Launchpad and Mission Control arrive as these, not as the ordinary keys.
constexpr std::pair<SystemKeyID, std::uint16_t> systemKeyCodes[] = {
    {SystemKeyID::volumeUp, KEY_VOLUMEUP},
    {SystemKeyID::volumeDown, KEY_VOLUMEDOWN},
    {SystemKeyID::mute, KEY_MUTE},
    {SystemKeyID::brightnessUp, KEY_BRIGHTNESSUP},
    {SystemKeyID::brightnessDown, KEY_BRIGHTNESSDOWN},
    {SystemKeyID::keyboardBacklightUp, KEY_KBDILLUMUP},
    {SystemKeyID::keyboardBacklightDown, KEY_KBDILLUMDOWN},
    {SystemKeyID::playPause, KEY_PLAYPAUSE},
    {SystemKeyID::nextTrack, KEY_NEXTSONG},
    {SystemKeyID::previousTrack, KEY_PREVIOUSSONG},
    {SystemKeyID::missionControl, KEY_SCALE},
    {SystemKeyID::launchpad, KEY_ALL_APPLICATIONS},
};

std::array<Meaning, highestCode + 1> makeMeanings() {
    std::array<Meaning, highestCode + 1> meanings{};
    for (const KeyCode key : allKeyCodes())
        if (const auto code = codeFor(key)) meanings[*code] = key;
    for (const auto& [key, code] : systemKeyCodes) meanings[code] = key;  // over the ordinary keys of the same code
    return meanings;
}

}  // namespace

Meaning meaningOf(std::uint16_t code) {
    static const auto meanings = makeMeanings();
    return code <= highestCode ? meanings[code] : Meaning{};
}

std::optional<std::uint16_t> codeFor(KeyCode key) {
    for (const auto& [withoutUsage, code] : keysWithoutUsage)
        if (withoutUsage == key) return code;
    const auto usage = hidUsage(key);
    if (!usage) return std::nullopt;
    return evdevCodeForUsage(static_cast<std::uint32_t>(*usage & 0xFFFF));
}

std::optional<std::uint16_t> codeFor(SystemKeyID key) {
    for (const auto& [systemKey, code] : systemKeyCodes)
        if (systemKey == key) return code;
    return std::nullopt;
}

}  // namespace orvane::evdevkeys
