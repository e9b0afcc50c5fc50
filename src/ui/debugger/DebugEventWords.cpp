#include "ui/debugger/DebugEventWords.h"

namespace orvane::debugwords {

std::string eventTypeName(std::uint32_t type) {
    switch (type) {
    case TapEventType::keyDown: return "keyDown";
    case TapEventType::keyUp: return "keyUp";
    case TapEventType::flagsChanged: return "flagsChanged";
    case TapEventType::systemDefined: return "systemDefined";
    default: return "unknown";
    }
}

std::string hexWord(std::uint64_t value) {
    static constexpr char digits[] = "0123456789ABCDEF";
    std::string reversed;
    do {
        reversed.push_back(digits[value & 0xF]);
        value >>= 4;
    } while (value != 0);
    return "0x" + std::string(reversed.rbegin(), reversed.rend());
}

bool hasKeyFields(const DebugEvent& record) { return record.event.type != TapEventType::systemDefined; }

std::optional<std::string> data1Hex(const DebugEvent& record) {
    if (!record.event.subtype) return std::nullopt;
    return hexWord(static_cast<std::uint64_t>(record.event.data1));
}

std::optional<std::string> decodedInfo(const DebugEvent& record) {
    if (record.event.systemKey) return "\u2192 " + std::string(displayName(*record.event.systemKey));
    if (hasKeyFields(record) && record.event.key) return "\u2192 " + std::string(displayName(*record.event.key));
    return std::nullopt;
}

std::string describeTarget(const TargetAction& target) {
    switch (target.kind()) {
    case TargetAction::Kind::block: return "Block";
    case TargetAction::Kind::key: return std::string(displayName(target.keyCode()));
    case TargetAction::Kind::combination:
        if (target.modifiers().isEmpty()) return std::string(displayName(target.keyCode()));
        return target.modifiers().modifierSymbols() + std::string(symbol(target.keyCode()));
    case TargetAction::Kind::modifiers: return target.modifiers().modifierSymbols();
    }
    return {};
}

std::optional<std::string> interceptionInfo(const DebugEvent& record) {
    if (!record.mapping) return std::nullopt;
    std::string text = std::string("\u26A1 ") + (record.isMappedInHIDLayer ? "HID" : "Tap") + " \u2192 " + describeTarget(record.mapping->targetAction);
    if (record.mapping->aloneKey) text += "  \u00B7 " + record.mapping->aloneLabel();
    return text;
}

std::optional<std::string> dualRoleInfo(const DebugEvent& record) {
    if (!record.dualRole) return std::nullopt;
    switch (*record.dualRole) {
    case DualRoleOutcome::aloneKeySent:
        if (record.mapping && record.mapping->aloneKey) return "alone key " + std::string(symbol(*record.mapping->aloneKey)) + " sent";
        return "alone key sent";
    case DualRoleOutcome::heldRoleApplied: return "held role applied";
    case DualRoleOutcome::heldTooLong: return "held past the alone time: nothing typed";
    }
    return std::nullopt;
}

}  // namespace orvane::debugwords
