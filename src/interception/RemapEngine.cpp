#include "interception/RemapEngine.h"

namespace orvane {

TapDecision RemapEngine::handleEvent(const TapEvent& event) const {
    switch (event.type) {
    case TapEventType::tapDisabledByTimeout:
    case TapEventType::tapDisabledByUserInput: return TapDecision::pass();  // the adapter re-enables the tap
    default: break;
    }
    // Our own posted events are never matched again, so mappings do not chain.
    if (event.userData == syntheticEventMarker) return TapDecision::pass();
    switch (event.type) {
    case TapEventType::systemDefined: return handleSystemDefined(event);
    case TapEventType::keyDown: return handleKey(event, true);
    case TapEventType::keyUp: return handleKey(event, false);
    case TapEventType::flagsChanged: return handleFlagsChanged(event);
    default: return TapDecision::pass();
    }
}

TapDecision RemapEngine::handleKey(const TapEvent& event, bool isKeyDown) const {
    const auto key = keyCodeFromRaw(event.keyCode);
    if (!key) return TapDecision::pass();
    // While Caps Lock arrives as F18 from the HID layer, every F18 event stands for Caps Lock.
    if (*key == KeyCode::f18) {
        if (const KeyMapping* capsLock = lookup_.capsLockMappingViaF18()) return performAction(*capsLock, isKeyDown, false);
    }
    const KeyMapping* mapping = lookup_.mappingForKey(*key);
    if (!mapping) return TapDecision::pass();
    return performAction(*mapping, isKeyDown, false);
}

TapDecision RemapEngine::handleFlagsChanged(const TapEvent& event) const {
    const auto key = keyCodeFromRaw(event.keyCode);
    if (!key) return TapDecision::pass();
    const auto mask = modifierFlagMask(*key);
    if (!mask) return TapDecision::pass();
    // The key's flag after the change: left and right keys share it, so releasing one of two
    // held Command keys still reads as a press.
    const bool isDown = (event.flags & *mask) != 0;
    if (*key == KeyCode::capsLock && lookup_.isCapsLockHIDRemapped()) return TapDecision::pass();
    const KeyMapping* mapping = lookup_.mappingForKey(*key);
    if (!mapping) return TapDecision::pass();
    // Caps Lock reports its toggle state, so each change becomes a full press of the target.
    return performAction(*mapping, isDown, *key == KeyCode::capsLock);
}

TapDecision RemapEngine::handleSystemDefined(const TapEvent& event) const {
    if (event.subtype != auxControlButtonsSubtype) return TapDecision::pass();
    const auto id = systemKeyFromRaw((event.data1 >> 16) & 0xFF);
    if (!id) return TapDecision::pass();
    // The key-state byte is 0x0A on press and 0x0B on release; the repeat bit is ignored.
    const bool isKeyDown = (event.data1 & 0x100) == 0;
    const KeyMapping* mapping = lookup_.mappingForSystemKey(*id);
    if (!mapping) return TapDecision::pass();
    return performAction(*mapping, isKeyDown, false);
}

std::uint64_t RemapEngine::modifierFlags(const Modifiers& modifiers) {
    std::uint64_t flags = 0;
    if (modifiers.command) flags |= EventFlag::command;
    if (modifiers.option) flags |= EventFlag::alternate;
    if (modifiers.control) flags |= EventFlag::control;
    if (modifiers.shift) flags |= EventFlag::shift;
    return flags;
}

TapDecision RemapEngine::performAction(const KeyMapping& mapping, bool isKeyDown, bool pressAndRelease) {
    const TargetAction& action = mapping.targetAction;
    if (action.kind() == TargetAction::Kind::block) return TapDecision::drop();
    const auto virtualKeyCode = static_cast<std::uint16_t>(rawValue(action.keyCode()));
    std::optional<std::uint64_t> flags;
    // Modifiers travel only as flags on the key's own events; none set leaves the platform's flags.
    if (action.kind() == TargetAction::Kind::combination && !action.modifiers().isEmpty()) flags = modifierFlags(action.modifiers());
    if (pressAndRelease) return TapDecision::replace({virtualKeyCode, true, flags}, {virtualKeyCode, false, flags});
    return TapDecision::replace({virtualKeyCode, isKeyDown, flags});
}

}  // namespace orvane
