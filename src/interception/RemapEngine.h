// Decides per intercepted event whether it passes, is dropped, or is replaced by posted key events.
#pragma once

#include "interception/TapEvent.h"
#include "model/MappingLookup.h"

#include <array>
#include <chrono>

namespace orvane {

// What a key with two roles did, as the debugger tells it.
enum class DualRoleOutcome : std::uint8_t {
    aloneKeySent,     // released alone within the alone time: the alone key was tapped
    heldRoleApplied,  // another key came while it was held: the target acted
    heldTooLong,      // released alone after the alone time: nothing was typed
};

class RemapEngine {
public:
    static constexpr std::chrono::milliseconds defaultAloneTime{500};

    explicit RemapEngine(const MappingLookup& lookup) : lookup_(lookup) {}

    // Reads the lookups afresh for every event. Its only memory is the keys with two roles held now
    // (and the modifiers a target of modifiers alone holds), so that their release and the keys typed
    // meanwhile are decided by the role they took. Runs on the tap's thread; never allocates.
    TapDecision handleEvent(const TapEvent& event);
    // What handleEvent would say of this event for a key with two roles; none for any other event.
    std::optional<DualRoleOutcome> outcomeOf(const TapEvent& event) const;

    // A key pressed and released alone within this time (by the events' own timestamps) taps its alone key.
    void setAloneTime(std::chrono::nanoseconds aloneTime) { aloneTime_ = aloneTime; }
    // Forgets the keys held: interception starts afresh (what they held on the output is the platform's to let go).
    void reset() { heldCount_ = 0; }

private:
    // A key with two roles, or holding modifiers alone, from its press to its release. It keeps the
    // mapping it was pressed under, so an edit of the list meanwhile cannot strand what it holds.
    struct HeldSource {
        SourceKey source = SourceKey::regular(KeyCode::a);
        TargetAction target = TargetAction::block();
        std::optional<KeyCode> aloneKey;
        std::uint64_t pressedAt = 0;
        bool committed = false;  // the held role acts (another key came, or there is no alone key)
    };
    // The mapping an event belongs to and what the event says of its source key.
    struct Resolved {
        SourceKey source;
        const KeyMapping* mapping = nullptr;  // none: no enabled mapping
        bool isDown = false;
        bool pressAndRelease = false;  // Caps Lock's toggle: a whole press in one event
    };

    std::optional<Resolved> resolve(const TapEvent& event) const;
    HeldSource* heldFor(const SourceKey& source);
    const HeldSource* heldFor(const SourceKey& source) const;
    bool isAnotherKeyPress(const TapEvent& event) const;
    std::uint64_t heldModifierFlags() const;
    std::uint64_t sourceFlags() const;
    bool isWithinAloneTime(const HeldSource& held, const TapEvent& release) const;

    TapDecision pressSource(const KeyMapping& mapping, const TapEvent& event, bool pressAndRelease);
    TapDecision releaseSource(const HeldSource& held, const TapEvent& event);
    void commitPending(TapDecision& decision, const TapEvent& event);
    TapDecision otherEvent(const TapEvent& event, const std::optional<Resolved>& resolved);

    const MappingLookup& lookup_;
    std::chrono::nanoseconds aloneTime_ = defaultAloneTime;
    std::array<HeldSource, 4> held_{};  // more keys with two roles held at once act as plain mappings
    std::size_t heldCount_ = 0;
};

}  // namespace orvane
