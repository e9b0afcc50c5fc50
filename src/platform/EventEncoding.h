// How keyboard events are numbered and packed, as Quartz does it: shared by the readers of events
// above the platform and by the backends that make and write them.
#pragma once

#include <cstdint>

namespace orvane {

// Event type numbers as the platform reports them.
namespace TapEventType {
inline constexpr std::uint32_t keyDown = 10;
inline constexpr std::uint32_t keyUp = 11;
inline constexpr std::uint32_t flagsChanged = 12;
inline constexpr std::uint32_t systemDefined = 14;
inline constexpr std::uint32_t tapDisabledByTimeout = 0xFFFFFFFE;
inline constexpr std::uint32_t tapDisabledByUserInput = 0xFFFFFFFF;
}  // namespace TapEventType

// Every event we post carries this in its source user data: the bytes "ORVANE" as a big-endian number.
inline constexpr std::int64_t syntheticEventMarker = 0x4F5256414E45;

// The system-defined subtype of media and special keys (NX_SUBTYPE_AUX_CONTROL_BUTTONS).
inline constexpr std::int16_t auxControlButtonsSubtype = 8;

// The first data word of a media key's system-defined event (subtype 8): the NX key type in bits 16
// to 23, then the key-state byte (0x0A press, 0x0B release) and the repeat bit.
constexpr std::int64_t mediaKeyData1(int keyType, bool isDown, bool isRepeat = false) {
    return (std::int64_t{keyType & 0xFF} << 16) | (isDown ? 0x0A00 : 0x0B00) | (isRepeat ? 1 : 0);
}

struct MediaKeyState {
    int keyType = 0;
    bool isDown = false;
    bool isRepeat = false;
};

// mediaKeyData1 read back: the one place its bits are picked apart.
constexpr MediaKeyState decodeMediaKeyData1(std::int64_t data1) {
    return {static_cast<int>((data1 >> 16) & 0xFF), (data1 & 0x100) == 0, (data1 & 1) != 0};
}

}  // namespace orvane
