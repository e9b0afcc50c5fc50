#include "model/SystemKeyID.h"

#include <array>

namespace orvane {
namespace {

struct SystemKeyInfo {
    SystemKeyID id;
    std::string_view caseName;
    std::string_view displayName;
    std::string_view symbol;
};

constexpr std::array<SystemKeyInfo, systemKeyCount> systemKeyTable{{
    {SystemKeyID::volumeUp, "volumeUp", "Volume Up", "\U0001F50A"},
    {SystemKeyID::volumeDown, "volumeDown", "Volume Down", "\U0001F509"},
    {SystemKeyID::brightnessUp, "brightnessUp", "Brightness Up", "\U0001F506"},
    {SystemKeyID::brightnessDown, "brightnessDown", "Brightness Down", "\U0001F505"},
    {SystemKeyID::missionControl, "missionControl", "Mission Control", "\u2303\u2191"},
    {SystemKeyID::keyboardBacklightDown, "keyboardBacklightDown", "Keyboard Backlight Down", "\u2328\uFE0F-"},
    {SystemKeyID::keyboardBacklightUp, "keyboardBacklightUp", "Keyboard Backlight Up", "\u2328\uFE0F+"},
    {SystemKeyID::mute, "mute", "Mute", "\U0001F507"},
    {SystemKeyID::playPause, "playPause", "Play/Pause", "\u23EF"},
    {SystemKeyID::nextTrack, "nextTrack", "Next Track", "\u23ED"},
    {SystemKeyID::previousTrack, "previousTrack", "Previous Track", "\u23EE"},
    {SystemKeyID::launchpad, "launchpad", "Launchpad", "\U0001F680"},
}};

constexpr std::array<SystemKeyID, systemKeyCount> makeAll() {
    std::array<SystemKeyID, systemKeyCount> all{};
    for (std::size_t i = 0; i < systemKeyCount; ++i) all[i] = systemKeyTable[i].id;
    return all;
}

constexpr auto allIds = makeAll();

const SystemKeyInfo& info(SystemKeyID id) {
    for (const auto& entry : systemKeyTable)
        if (entry.id == id) return entry;
    return systemKeyTable[0];  // unreachable for a valid id
}

}  // namespace

std::optional<SystemKeyID> systemKeyFromRaw(long long keyType) {
    switch (keyType) {
    case 0: case 1: case 2: case 3: case 4: case 5: case 6: case 7:
    case 16: case 19: case 20: case 131:
        return static_cast<SystemKeyID>(keyType);
    default:
        return std::nullopt;
    }
}

std::span<const SystemKeyID> allSystemKeys() { return allIds; }
std::string_view displayName(SystemKeyID key) { return info(key).displayName; }
std::string_view symbol(SystemKeyID key) { return info(key).symbol; }
std::string_view caseName(SystemKeyID key) { return info(key).caseName; }

}  // namespace orvane
