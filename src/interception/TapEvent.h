// The platform-free records of the remapping engine: an intercepted event and the decision about it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

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

struct TapEvent {
    std::uint32_t type = 0;
    std::uint16_t keyCode = 0;            // key and flags-changed events
    std::uint64_t flags = 0;
    std::optional<std::int16_t> subtype;  // system-defined events; none when the conversion failed
    std::int64_t data1 = 0;
    std::int64_t userData = 0;
};

struct SyntheticKeyEvent {
    std::uint16_t virtualKeyCode = 0;
    bool isKeyDown = false;
    // When present, replaces all flags of the new event; when absent, the platform's flags stay.
    std::optional<std::uint64_t> flags;

    friend bool operator==(const SyntheticKeyEvent&, const SyntheticKeyEvent&) = default;
};

// pass, drop, or replace by one or two events. Holds its events inline: deciding never allocates.
class TapDecision {
public:
    enum class Kind : std::uint8_t { pass, drop, replace };

    static constexpr TapDecision pass() { return TapDecision(Kind::pass); }
    static constexpr TapDecision drop() { return TapDecision(Kind::drop); }
    static constexpr TapDecision replace(SyntheticKeyEvent only) {
        TapDecision decision(Kind::replace);
        decision.events_[0] = only;
        decision.count_ = 1;
        return decision;
    }
    static constexpr TapDecision replace(SyntheticKeyEvent first, SyntheticKeyEvent second) {
        TapDecision decision(Kind::replace);
        decision.events_ = {first, second};
        decision.count_ = 2;
        return decision;
    }

    constexpr Kind kind() const { return kind_; }
    constexpr const SyntheticKeyEvent* begin() const { return events_.data(); }
    constexpr const SyntheticKeyEvent* end() const { return events_.data() + count_; }
    constexpr std::size_t size() const { return count_; }
    constexpr const SyntheticKeyEvent& operator[](std::size_t i) const { return events_[i]; }

private:
    constexpr explicit TapDecision(Kind kind) : kind_(kind) {}
    Kind kind_;
    std::uint8_t count_ = 0;
    std::array<SyntheticKeyEvent, 2> events_{};
};

}  // namespace orvane
