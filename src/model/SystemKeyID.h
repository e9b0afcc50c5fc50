// The media and system keys, identified by the NX key type of their system-defined events.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace orvane {

enum class SystemKeyID : int {
    volumeUp = 0,
    volumeDown = 1,
    brightnessUp = 2,
    brightnessDown = 3,
    missionControl = 4,
    keyboardBacklightDown = 5,
    keyboardBacklightUp = 6,
    mute = 7,
    playPause = 16,
    nextTrack = 19,
    previousTrack = 20,
    launchpad = 131,
};

inline constexpr std::size_t systemKeyCount = 12;

constexpr int rawValue(SystemKeyID key) { return static_cast<int>(key); }

std::optional<SystemKeyID> systemKeyFromRaw(long long keyType);
std::span<const SystemKeyID> allSystemKeys();
std::string_view displayName(SystemKeyID key);
std::string_view symbol(SystemKeyID key);
std::string_view caseName(SystemKeyID key);

}  // namespace orvane
