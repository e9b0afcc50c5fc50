#include "interception/RemapEngine.h"

namespace orvane {
namespace {

// The left key of each modifier, in the order their glyphs are written (⌃ ⌥ ⇧ ⌘).
struct ModifierKey {
    KeyCode key;
    std::uint64_t flag;
    bool Modifiers::*member;
};
constexpr std::array<ModifierKey, 4> modifierKeys{{{KeyCode::leftControl, EventFlag::control, &Modifiers::control},
                                                   {KeyCode::leftOption, EventFlag::alternate, &Modifiers::option},
                                                   {KeyCode::leftShift, EventFlag::shift, &Modifiers::shift},
                                                   {KeyCode::leftCommand, EventFlag::command, &Modifiers::command}}};

// A modifier's shared flag with its left key's own bit, as a real left key sets them.
std::uint64_t flagsOf(const ModifierKey& modifier) { return modifier.flag | sideFlag(modifier.key).value_or(0); }

std::uint64_t flagsWithSides(const Modifiers& modifiers) {
    std::uint64_t flags = 0;
    for (const auto& modifier : modifierKeys)
        if (modifiers.*modifier.member) flags |= flagsOf(modifier);
    return flags;
}

SyntheticKeyEvent keyEvent(KeyCode key, bool isDown, std::optional<std::uint64_t> flags) {
    return {static_cast<std::uint16_t>(rawValue(key)), isDown, flags};
}

// Replacement events for a target. pressAndRelease turns one toggle into a whole press.
TapDecision performAction(const TargetAction& action, bool isKeyDown, bool pressAndRelease) {
    if (!action.hasKey()) return TapDecision::drop();
    std::optional<std::uint64_t> flags;
    // Modifiers travel only as flags on the key's own events; none set leaves the platform's flags.
    if (action.kind() == TargetAction::Kind::combination && !action.modifiers().isEmpty()) flags = action.modifiers().eventFlags();
    if (pressAndRelease) return TapDecision::replace(keyEvent(action.keyCode(), true, flags), keyEvent(action.keyCode(), false, flags));
    return TapDecision::replace(keyEvent(action.keyCode(), isKeyDown, flags));
}

bool holdsModifiers(const TargetAction& target) { return target.kind() == TargetAction::Kind::modifiers; }

// The flags a modifier key sets itself, which nothing it stands for may carry. Caps Lock's toggle is
// no held modifier.
std::uint64_t ownFlags(KeyCode key) {
    if (key == KeyCode::capsLock) return 0;
    return modifierFlagMask(key).value_or(0) | sideFlag(key).value_or(0);
}
std::uint64_t ownFlags(const TapEvent& event) { return event.key ? ownFlags(*event.key) : 0; }

}  // namespace

std::optional<RemapEngine::Resolved> RemapEngine::resolve(const TapEvent& event) const {
    switch (event.type) {
    case TapEventType::systemDefined:
        if (!event.systemKey) return std::nullopt;
        return Resolved{SourceKey::system(*event.systemKey), lookup_.mappingForSystemKey(*event.systemKey), *event.isDown, false};
    case TapEventType::keyDown:
    case TapEventType::keyUp:
        if (!event.key) return std::nullopt;
        if (*event.key == KeyCode::f18) {
            // A Caps Lock already held through F18 is released through F18, whatever the list became meanwhile.
            if (const KeyMapping* capsLock = lookup_.capsLockMappingViaF18())
                return Resolved{SourceKey::regular(KeyCode::capsLock), capsLock, *event.isDown, false};
            if (heldFor(SourceKey::regular(KeyCode::capsLock)))
                return Resolved{SourceKey::regular(KeyCode::capsLock), nullptr, *event.isDown, false};
        }
        return Resolved{SourceKey::regular(*event.key), lookup_.mappingForKey(*event.key), *event.isDown, false};
    case TapEventType::flagsChanged:
        if (!event.key || !event.isDown) return std::nullopt;  // not a modifier key
        if (*event.key == KeyCode::capsLock && lookup_.isCapsLockHIDRemapped()) return std::nullopt;
        // Caps Lock reports its toggle state, so each change becomes a full press of the target.
        return Resolved{SourceKey::regular(*event.key), lookup_.mappingForKey(*event.key), *event.isDown, *event.key == KeyCode::capsLock};
    default: return std::nullopt;  // including the tap-disabled notices: the adapter re-enables the tap
    }
}

RemapEngine::HeldSource* RemapEngine::heldFor(const SourceKey& source) {
    for (std::size_t i = 0; i < heldCount_; ++i)
        if (held_[i].source == source) return &held_[i];
    return nullptr;
}

const RemapEngine::HeldSource* RemapEngine::heldFor(const SourceKey& source) const {
    return const_cast<RemapEngine*>(this)->heldFor(source);
}

// A key going down other than a modifier: what ends "pressed alone". Modifiers pressed alone do not.
bool RemapEngine::isAnotherKeyPress(const TapEvent& event) const {
    if (event.type == TapEventType::systemDefined) return event.systemKey && *event.isDown;
    return event.type == TapEventType::keyDown && !(event.key && isModifierKey(*event.key));
}

// Of the modifier keys held as sources, whose own flags the real events typed meanwhile still carry.
std::uint64_t RemapEngine::sourceFlags() const {
    std::uint64_t flags = 0;
    for (std::size_t i = 0; i < heldCount_; ++i)
        if (held_[i].source.isRegular()) flags |= ownFlags(held_[i].source.keyCode());
    return flags;
}

std::uint64_t RemapEngine::heldModifierFlags() const {
    std::uint64_t flags = 0;
    for (std::size_t i = 0; i < heldCount_; ++i)
        if (holdsModifiers(held_[i].target)) flags |= flagsWithSides(held_[i].target.modifiers());
    return flags;
}

// Timestamps that go backwards (a clock set back) count as within the time.
bool RemapEngine::isWithinAloneTime(const HeldSource& held, const TapEvent& release) const {
    if (release.timestamp <= held.pressedAt) return true;
    return std::chrono::nanoseconds(release.timestamp - held.pressedAt) <= aloneTime_;
}

TapDecision RemapEngine::handleEvent(const TapEvent& event) {
    // Our own posted events are never matched again, so mappings do not chain.
    if (event.isSynthetic) return TapDecision::pass();
    const auto resolved = resolve(event);
    if (resolved) {
        if (HeldSource* held = heldFor(resolved->source)) {
            if (!resolved->isDown) {
                const HeldSource released = *held;
                *held = held_[--heldCount_];
                return releaseSource(released, event);
            }
            // Its autorepeat: swallowed while the role is undecided; a held key repeats as it would.
            if (held->committed && held->target.hasKey()) return performAction(held->target, true, false);
            return TapDecision::drop();
        }
        const KeyMapping* mapping = resolved->mapping;
        if (mapping && (resolved->isDown || resolved->pressAndRelease) && (mapping->aloneKey || holdsModifiers(mapping->targetAction)))
            return pressSource(*mapping, event, resolved->pressAndRelease);
    }
    return otherEvent(event, resolved);
}

TapDecision RemapEngine::pressSource(const KeyMapping& mapping, const TapEvent& event, bool pressAndRelease) {
    const std::uint64_t userFlags = event.flags & ~ownFlags(event) & ~sourceFlags();
    // A toggle cannot be held: it is a tap, of the alone key when there is one.
    if (pressAndRelease) {
        if (!mapping.aloneKey) return performAction(mapping.targetAction, true, true);
        return TapDecision::replace(keyEvent(*mapping.aloneKey, true, userFlags), keyEvent(*mapping.aloneKey, false, userFlags));
    }
    if (heldCount_ == held_.size()) return performAction(mapping.targetAction, true, false);
    TapDecision decision = TapDecision::drop();
    // Pressing it ends "alone" for the others; being a modifier key, it would not.
    if (isAnotherKeyPress(event)) commitPending(decision, event);
    const HeldSource held{mapping.sourceKey, mapping.targetAction, mapping.aloneKey, event.timestamp, !mapping.aloneKey};
    if (holdsModifiers(held.target)) {
        // At once, so that a modifier and a click work: each modifier goes down as a flags change.
        std::uint64_t flags = userFlags | heldModifierFlags();
        for (const auto& modifier : modifierKeys) {
            if (!(held.target.modifiers().*modifier.member) || (flags & modifier.flag)) continue;
            flags |= flagsOf(modifier);
            decision.append({static_cast<std::uint16_t>(rawValue(modifier.key)), true, flags, true});
        }
    }
    held_[heldCount_++] = held;
    return decision;
}

// Marks every source still undecided as held; a held key goes down now, before the key that decided it.
// A media key cannot be posted after it, so it decides only the sources whose target is no key.
void RemapEngine::commitPending(TapDecision& decision, const TapEvent& event) {
    for (std::size_t i = 0; i < heldCount_; ++i) {
        HeldSource& held = held_[i];
        if (held.committed) continue;
        if (held.target.hasKey()) {
            if (event.type == TapEventType::systemDefined) continue;
            for (const SyntheticKeyEvent& down : performAction(held.target, true, false)) decision.append(down);
        }
        held.committed = true;
    }
}

TapDecision RemapEngine::releaseSource(const HeldSource& held, const TapEvent& event) {
    TapDecision decision = TapDecision::drop();
    const std::uint64_t others = heldModifierFlags();
    std::uint64_t flags = (event.flags & ~ownFlags(event) & ~sourceFlags()) | others;
    if (holdsModifiers(held.target)) {
        flags |= flagsWithSides(held.target.modifiers());
        // Up in the reverse order; a modifier another held source also holds stays down.
        for (auto modifier = modifierKeys.rbegin(); modifier != modifierKeys.rend(); ++modifier) {
            if (!(held.target.modifiers().*modifier->member) || (others & modifier->flag)) continue;
            flags &= ~flagsOf(*modifier);
            decision.append({static_cast<std::uint16_t>(rawValue(modifier->key)), false, flags, true});
        }
    }
    if (held.committed) {
        if (held.target.hasKey()) for (const SyntheticKeyEvent& up : performAction(held.target, false, false)) decision.append(up);
    } else if (held.aloneKey && isWithinAloneTime(held, event)) {
        decision.append(keyEvent(*held.aloneKey, true, flags));
        decision.append(keyEvent(*held.aloneKey, false, flags));
    }
    return decision;
}

TapDecision RemapEngine::otherEvent(const TapEvent& event, const std::optional<Resolved>& resolved) {
    const TapDecision plain = resolved && resolved->mapping
                                  ? performAction(resolved->mapping->targetAction, resolved->isDown, resolved->pressAndRelease)
                                  : TapDecision::pass();
    if (heldCount_ == 0) return plain;
    TapDecision decision = TapDecision::drop();
    if (isAnotherKeyPress(event)) commitPending(decision, event);
    // Keys typed while modifiers alone are held carry them, as under real modifiers; a modifier key
    // held as a source adds nothing of its own.
    const std::uint64_t flags = (event.flags & ~sourceFlags()) | heldModifierFlags();
    const bool changesFlags = flags != event.flags;
    switch (plain.kind()) {
    case TapDecision::Kind::pass:
        if (decision.size() == 0) return changesFlags ? TapDecision::pass(flags) : plain;
        // A held key went down first: the key that decided it follows it, posted.
        decision.append({event.keyCode, *event.isDown, flags});
        return decision;
    case TapDecision::Kind::drop: return decision;
    case TapDecision::Kind::replace:
        for (SyntheticKeyEvent replacement : plain) {
            if (!replacement.flags && changesFlags) replacement.flags = flags;
            decision.append(replacement);
        }
        return decision;
    }
    return plain;
}

std::optional<DualRoleOutcome> RemapEngine::outcomeOf(const TapEvent& event) const {
    if (event.isSynthetic) return std::nullopt;
    const auto resolved = resolve(event);
    if (resolved) {
        if (const HeldSource* held = heldFor(resolved->source)) {
            if (resolved->isDown || !held->aloneKey) return std::nullopt;
            if (held->committed) return DualRoleOutcome::heldRoleApplied;
            return isWithinAloneTime(*held, event) ? DualRoleOutcome::aloneKeySent : DualRoleOutcome::heldTooLong;
        }
        if (resolved->mapping && resolved->mapping->aloneKey && resolved->pressAndRelease) return DualRoleOutcome::aloneKeySent;
    }
    if (!isAnotherKeyPress(event)) return std::nullopt;
    for (std::size_t i = 0; i < heldCount_; ++i) {
        const HeldSource& held = held_[i];
        if (!held.committed && held.aloneKey && !(held.target.hasKey() && event.type == TapEventType::systemDefined))
            return DualRoleOutcome::heldRoleApplied;
    }
    return std::nullopt;
}

}  // namespace orvane
