// The debugger's words for a captured record: its type's name, data1 in hexadecimal, the key it
// decodes to and what its mapping does. Plain C++, shared by the view and the simulator's output.
#pragma once

#include "interception/DebugEvent.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane::debugwords {

// "keyDown", "keyUp", "flagsChanged", "systemDefined", or "unknown" for any other type.
std::string eventTypeName(std::uint32_t type);

// "0x" and the upper-case hexadecimal digits of the 64-bit word, without leading zeros.
std::string hexWord(std::uint64_t value);

// Whether the record carries a key code and flags: every event but a system-defined one.
bool hasKeyFields(const DebugEvent& record);

// data1 in hexadecimal, for system-defined events that converted.
std::optional<std::string> data1Hex(const DebugEvent& record);

// "→ " and the name of the key or system key the event decodes to; none for other codes.
std::optional<std::string> decodedInfo(const DebugEvent& record);

// What a mapping's target does: the key's name, a combination's glyphs and key symbol, or "Block".
std::string describeTarget(const TargetAction& target);

// "⚡ Tap → …" for the record's mapping, "⚡ HID → …" when the HID layer carries it out; none
// without a mapping.
std::optional<std::string> interceptionInfo(const DebugEvent& record);

// What a key with two roles did: "alone key ⎋ sent", "held role applied", "held past the alone
// time: nothing typed"; none for other events.
std::optional<std::string> dualRoleInfo(const DebugEvent& record);

}  // namespace orvane::debugwords
