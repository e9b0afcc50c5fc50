// The platform-free records of the remapping engine: an intercepted event and the decision about it.
#pragma once

#include "model/KeyCode.h"
#include "model/SystemKeyID.h"
#include "platform/EventEncoding.h"

#include <array>
#include <cstdint>
#include <optional>

namespace orvane {

// One event as every reader sees it: the platform's fields and what they mean, decoded once by
// decode() so that the engine, the recorder and the capture never pick bits apart themselves.
struct TapEvent {
    std::uint32_t type = 0;
    std::uint16_t keyCode = 0;            // key and flags-changed events: the virtual key code
    std::uint64_t flags = 0;              // the modifier flags held at the event
    std::optional<std::int16_t> subtype;  // system-defined events; none when the conversion failed
    std::int64_t data1 = 0;               // system-defined events: the first data word
    std::uint64_t timestamp = 0;          // the event's own time, in nanoseconds of a steady clock

    // ---- Decoded ----
    bool isSynthetic = false;               // we posted it: it carries syntheticEventMarker
    std::optional<KeyCode> key;             // events other than system-defined ones whose code is in the catalogue
    std::optional<int> auxKeyType;          // media key events (subtype 8): the NX key type, bits 16 to 23 of data1
    std::optional<SystemKeyID> systemKey;   // ... when that type is one of the catalogue's system keys
    // Whether the event presses or releases its key: key down/up, a modifier's flag after a flags
    // change, a media key's key-state byte. None where it cannot be told.
    std::optional<bool> isDown;

    // Decodes an event from the platform's raw fields.
    static TapEvent decode(std::uint32_t type, std::uint16_t keyCode, std::uint64_t flags, std::int64_t userData,
                           std::optional<std::int16_t> subtype = std::nullopt, std::int64_t data1 = 0);
};

struct SyntheticKeyEvent {
    std::uint16_t virtualKeyCode = 0;
    bool isKeyDown = false;
    // When present, replaces all flags of the new event; when absent, the platform's flags stay.
    std::optional<std::uint64_t> flags;
    // A modifier key's change, posted as a flags-changed event (its flags then say its state).
    bool isModifierChange = false;

    friend bool operator==(const SyntheticKeyEvent&, const SyntheticKeyEvent&) = default;
};

// pass (possibly with other flags), drop, or replace by up to eight events. Holds its events inline:
// deciding never allocates.
class TapDecision {
public:
    enum class Kind : std::uint8_t { pass, drop, replace };
    static constexpr std::size_t capacity = 8;

    static constexpr TapDecision pass() { return TapDecision(Kind::pass); }
    // The event goes on carrying exactly these flags (modifiers held by a key with two roles).
    static constexpr TapDecision pass(std::uint64_t flags) {
        TapDecision decision(Kind::pass);
        decision.passFlags_ = flags;
        return decision;
    }
    static constexpr TapDecision drop() { return TapDecision(Kind::drop); }
    static constexpr TapDecision replace(SyntheticKeyEvent only) {
        TapDecision decision(Kind::replace);
        decision.events_[0] = only;
        decision.count_ = 1;
        return decision;
    }
    static constexpr TapDecision replace(SyntheticKeyEvent first, SyntheticKeyEvent second) {
        TapDecision decision(Kind::replace);
        decision.events_[0] = first;
        decision.events_[1] = second;
        decision.count_ = 2;
        return decision;
    }

    // Events posted before, or in place of, the intercepted one; what the capacity cannot hold is lost.
    constexpr void append(SyntheticKeyEvent event) {
        kind_ = Kind::replace;
        passFlags_.reset();
        if (count_ < capacity) events_[count_++] = event;
    }

    constexpr Kind kind() const { return kind_; }
    constexpr const std::optional<std::uint64_t>& passFlags() const { return passFlags_; }
    constexpr const SyntheticKeyEvent* begin() const { return events_.data(); }
    constexpr const SyntheticKeyEvent* end() const { return events_.data() + count_; }
    constexpr std::size_t size() const { return count_; }
    constexpr const SyntheticKeyEvent& operator[](std::size_t i) const { return events_[i]; }

private:
    constexpr explicit TapDecision(Kind kind) : kind_(kind) {}
    Kind kind_;
    std::uint8_t count_ = 0;
    std::optional<std::uint64_t> passFlags_;
    std::array<SyntheticKeyEvent, capacity> events_{};
};

}  // namespace orvane
