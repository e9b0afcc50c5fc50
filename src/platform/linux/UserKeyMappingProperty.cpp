#include "platform/linux/UserKeyMappingProperty.h"

#include "platform/linux/HidUsageTable.h"

#include <nlohmann/json.hpp>

namespace orvane {
namespace {

using nlohmann::json;

constexpr std::uint64_t keyboardPage = 0x7;
constexpr std::uint64_t capsLockUsage = keyboardPage << 32 | 0x39;

// A usage as the tool takes it: a non-negative integer (nlohmann reads big ones as unsigned).
std::optional<std::uint64_t> usageField(const json& entry, const char* name) {
    const auto field = entry.find(name);
    if (field == entry.end() || !field->is_number_integer()) return std::nullopt;
    if (field->is_number_unsigned()) return field->get<std::uint64_t>();
    const auto value = field->get<std::int64_t>();
    return value < 0 ? std::nullopt : std::optional<std::uint64_t>(static_cast<std::uint64_t>(value));
}

}  // namespace

std::optional<UserKeyMapping> parseUserKeyMapping(std::string_view text, std::string& error) {
    json document;
    try {
        document = json::parse(text);
    } catch (const json::exception&) {
        error = "the property is not JSON";
        return std::nullopt;
    }
    if (!document.is_object() || document.size() != 1 || !document.contains("UserKeyMapping")) {
        error = "only the property UserKeyMapping can be set";
        return std::nullopt;
    }
    const json& entries = document["UserKeyMapping"];
    if (!entries.is_array()) {
        error = "UserKeyMapping is not a list";
        return std::nullopt;
    }
    if (entries.empty()) return UserKeyMapping{};
    if (entries.size() > 1) {
        error = "UserKeyMapping holds more than one mapping; only Caps Lock can be remapped";
        return std::nullopt;
    }
    const json& entry = entries.front();
    const auto source = entry.is_object() ? usageField(entry, "HIDKeyboardModifierMappingSrc") : std::nullopt;
    const auto destination = entry.is_object() ? usageField(entry, "HIDKeyboardModifierMappingDst") : std::nullopt;
    if (!source || !destination) {
        error = "a mapping needs HIDKeyboardModifierMappingSrc and HIDKeyboardModifierMappingDst as unsigned integers";
        return std::nullopt;
    }
    if (*source != capsLockUsage) {
        error = "only Caps Lock (" + std::to_string(capsLockUsage) + ") can be remapped, not " + std::to_string(*source);
        return std::nullopt;
    }
    const auto key =
        *destination >> 32 == keyboardPage ? evdevCodeForUsage(static_cast<std::uint32_t>(*destination)) : std::nullopt;
    if (!key) {
        error = "no Linux key for the HID usage " + std::to_string(*destination);
        return std::nullopt;
    }
    return UserKeyMapping{key};
}

}  // namespace orvane
