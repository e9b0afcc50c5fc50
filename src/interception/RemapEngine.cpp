#include "interception/RemapEngine.h"

namespace orvane {
namespace {

// Replacement events for a mapping. pressAndRelease turns one toggle into a whole press.
TapDecision performAction(const KeyMapping& mapping, bool isKeyDown, bool pressAndRelease) {
    const TargetAction& action = mapping.targetAction;
    if (!action.hasKey()) return TapDecision::drop();
    const auto virtualKeyCode = static_cast<std::uint16_t>(rawValue(action.keyCode()));
    std::optional<std::uint64_t> flags;
    // Modifiers travel only as flags on the key's own events; none set leaves the platform's flags.
    if (action.kind() == TargetAction::Kind::combination && !action.modifiers().isEmpty()) flags = action.modifiers().eventFlags();
    if (pressAndRelease) return TapDecision::replace({virtualKeyCode, true, flags}, {virtualKeyCode, false, flags});
    return TapDecision::replace({virtualKeyCode, isKeyDown, flags});
}

}  // namespace

TapDecision RemapEngine::handleEvent(const TapEvent& event) const {
    // Our own posted events are never matched again, so mappings do not chain.
    if (event.isSynthetic) return TapDecision::pass();
    switch (event.type) {
    case TapEventType::systemDefined: return handleSystemDefined(event);
    case TapEventType::keyDown:
    case TapEventType::keyUp: return handleKey(event);
    case TapEventType::flagsChanged: return handleFlagsChanged(event);
    default: return TapDecision::pass();  // including the tap-disabled notices: the adapter re-enables the tap
    }
}

TapDecision RemapEngine::handleKey(const TapEvent& event) const {
    if (!event.key) return TapDecision::pass();
    if (*event.key == KeyCode::f18) {
        if (const KeyMapping* capsLock = lookup_.capsLockMappingViaF18()) return performAction(*capsLock, *event.isDown, false);
    }
    const KeyMapping* mapping = lookup_.mappingForKey(*event.key);
    if (!mapping) return TapDecision::pass();
    return performAction(*mapping, *event.isDown, false);
}

TapDecision RemapEngine::handleFlagsChanged(const TapEvent& event) const {
    if (!event.key || !event.isDown) return TapDecision::pass();  // not a modifier key
    if (*event.key == KeyCode::capsLock && lookup_.isCapsLockHIDRemapped()) return TapDecision::pass();
    const KeyMapping* mapping = lookup_.mappingForKey(*event.key);
    if (!mapping) return TapDecision::pass();
    // Caps Lock reports its toggle state, so each change becomes a full press of the target.
    return performAction(*mapping, *event.isDown, *event.key == KeyCode::capsLock);
}

TapDecision RemapEngine::handleSystemDefined(const TapEvent& event) const {
    if (!event.systemKey) return TapDecision::pass();
    const KeyMapping* mapping = lookup_.mappingForSystemKey(*event.systemKey);
    if (!mapping) return TapDecision::pass();
    return performAction(*mapping, *event.isDown, false);
}

}  // namespace orvane
