// Decoding a mapping list strictly, with the path to the first value that is wrong (see MappingJson.h).
#include "model/MappingJson.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace orvane {

using Json = nlohmann::json;

std::string DecodingError::description() const {
    std::string kindText;
    switch (kind) {
    case Kind::typeMismatch: kindText = "Type mismatch"; break;
    case Kind::missingMember: kindText = "Missing member"; break;
    case Kind::dataCorrupted: kindText = "Data corrupted"; break;
    case Kind::malformedJson: kindText = "Malformed JSON"; break;
    }
    const std::string where = path.empty() ? std::string("the document") : path;
    return kindText + " at " + where + ": " + message;
}

namespace {

// Thrown inside the decoder only; decodeMappings turns it into a result.
struct Failure {
    DecodingError error;
};

[[noreturn]] void fail(DecodingError::Kind kind, const std::string& path, std::string message) {
    throw Failure{DecodingError{kind, path, std::move(message)}};
}

std::string member(const std::string& path, std::string_view name) {
    return path.empty() ? std::string(name) : path + "." + std::string(name);
}

const char* typeName(const Json& value) {
    switch (value.type()) {
    case Json::value_t::null: return "null";
    case Json::value_t::object: return "an object";
    case Json::value_t::array: return "an array";
    case Json::value_t::string: return "a string";
    case Json::value_t::boolean: return "a boolean";
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
    case Json::value_t::number_float: return "a number";
    default: return "an unsupported value";
    }
}

void expectObject(const Json& value, const std::string& path) {
    if (!value.is_object()) fail(DecodingError::Kind::typeMismatch, path, std::string("expected an object, found ") + typeName(value));
}

const Json& requireMember(const Json& object, std::string_view name, const std::string& path) {
    const auto found = object.find(name);
    if (found == object.end()) fail(DecodingError::Kind::missingMember, path, "no member \"" + std::string(name) + "\"");
    return *found;
}

bool readBool(const Json& object, std::string_view name, const std::string& path) {
    const Json& value = requireMember(object, name, path);
    if (!value.is_boolean())
        fail(DecodingError::Kind::typeMismatch, member(path, name), std::string("expected a boolean, found ") + typeName(value));
    return value.get<bool>();
}

// A JSON integer; a number that is integral but written with a fraction or exponent also counts.
long long readInteger(const Json& value, const std::string& path) {
    if (value.is_number_integer() && !value.is_number_unsigned()) return value.get<long long>();
    if (value.is_number_unsigned()) {
        const auto unsignedValue = value.get<unsigned long long>();
        if (unsignedValue > static_cast<unsigned long long>(std::numeric_limits<long long>::max()))
            fail(DecodingError::Kind::dataCorrupted, path, "the number " + value.dump() + " does not fit in an integer");
        return static_cast<long long>(unsignedValue);
    }
    if (value.is_number_float()) {
        const double number = value.get<double>();
        if (!std::isfinite(number) || std::trunc(number) != number || number < -9.2e18 || number > 9.2e18)
            fail(DecodingError::Kind::dataCorrupted, path, "the number " + value.dump() + " is not an integer");
        return static_cast<long long>(number);
    }
    fail(DecodingError::Kind::typeMismatch, path, std::string("expected an integer, found ") + typeName(value));
}

// A key object: its member "_0" holds the raw value of a Key, which fromRaw accepts or not.
template <typename Key>
Key readKey(const Json& object, const std::string& path, std::optional<Key> (*fromRaw)(long long), const char* what) {
    const Json& value = requireMember(object, "_0", path);
    const std::string valuePath = member(path, "_0");
    const long long raw = readInteger(value, valuePath);
    const std::optional<Key> key = fromRaw(raw);
    if (!key) fail(DecodingError::Kind::dataCorrupted, valuePath, std::to_string(raw) + " is not " + what);
    return *key;
}

// An enumeration object names its case by its one member among the case names; others are ignored.
template <std::size_t N>
std::pair<std::string_view, const Json*> selectCase(const Json& object, const std::array<std::string_view, N>& caseNames,
                                                    const std::string& path) {
    expectObject(object, path);
    std::string_view selected;
    const Json* selectedValue = nullptr;
    std::size_t count = 0;
    for (const auto name : caseNames) {
        const auto found = object.find(name);
        if (found == object.end()) continue;
        ++count;
        selected = name;
        selectedValue = &*found;
    }
    if (count != 1) fail(DecodingError::Kind::typeMismatch, path, "Invalid number of keys found, expected one.");
    const std::string casePath = member(path, selected);
    expectObject(*selectedValue, casePath);
    return {selected, selectedValue};
}

SourceKey readSourceKey(const Json& value, const std::string& path) {
    static constexpr std::array<std::string_view, 2> cases{"regular", "system"};
    const auto [name, payload] = selectCase(value, cases, path);
    const std::string casePath = member(path, name);
    if (name == "regular") return SourceKey::regular(readKey(*payload, casePath, keyCodeFromRaw, "a key code"));
    return SourceKey::system(readKey(*payload, casePath, systemKeyFromRaw, "a system key type"));
}

Modifiers readModifiers(const Json& value, const std::string& path) {
    expectObject(value, path);
    Modifiers modifiers;
    modifiers.command = readBool(value, "command", path);
    modifiers.option = readBool(value, "option", path);
    modifiers.control = readBool(value, "control", path);
    modifiers.shift = readBool(value, "shift", path);
    return modifiers;
}

TargetAction readTargetAction(const Json& value, const std::string& path) {
    static constexpr std::array<std::string_view, 4> cases{"block", "key", "combination", "modifiers"};
    const auto [name, payload] = selectCase(value, cases, path);
    const std::string casePath = member(path, name);
    if (name == "block") return TargetAction::block();
    if (name == "modifiers")
        return TargetAction::modifiersOnly(readModifiers(requireMember(*payload, "_0", casePath), member(casePath, "_0")));
    const KeyCode key = readKey(*payload, casePath, keyCodeFromRaw, "a key code");
    if (name == "key") return TargetAction::key(key);
    const Json& modifiers = requireMember(*payload, "_1", casePath);
    return TargetAction::combination(key, readModifiers(modifiers, member(casePath, "_1")));
}

KeyMapping readMapping(const Json& value, const std::string& path) {
    expectObject(value, path);
    KeyMapping mapping;
    const Json& id = requireMember(value, "id", path);
    if (!id.is_string()) fail(DecodingError::Kind::typeMismatch, member(path, "id"), std::string("expected a string, found ") + typeName(id));
    const auto parsed = Uuid::parse(id.get_ref<const std::string&>());
    if (!parsed) fail(DecodingError::Kind::dataCorrupted, member(path, "id"), "not a UUID");
    mapping.id = *parsed;
    mapping.sourceKey = readSourceKey(requireMember(value, "sourceKey", path), member(path, "sourceKey"));
    mapping.targetAction = readTargetAction(requireMember(value, "targetAction", path), member(path, "targetAction"));
    mapping.isEnabled = readBool(value, "isEnabled", path);
    if (const auto alone = value.find("alone"); alone != value.end()) {
        expectObject(*alone, member(path, "alone"));
        mapping.aloneKey = readKey(*alone, member(path, "alone"), keyCodeFromRaw, "a key code");
    }
    return mapping;
}

}  // namespace

DecodeResult decodeMappings(std::string_view json) {
    DecodeResult result;
    Json document;
    try {
        document = Json::parse(json.begin(), json.end());
    } catch (const Json::parse_error& error) {
        result.error = DecodingError{DecodingError::Kind::malformedJson, "",
                                     "the text is not valid JSON (at byte " + std::to_string(error.byte) + ")"};
        return result;
    } catch (const Json::exception&) {  // a number too large for a double
        result.error = DecodingError{DecodingError::Kind::malformedJson, "", "the text holds a number out of range"};
        return result;
    }
    try {
        if (!document.is_array())
            fail(DecodingError::Kind::typeMismatch, "", std::string("expected an array, found ") + typeName(document));
        result.mappings.reserve(document.size());
        for (std::size_t i = 0; i < document.size(); ++i) result.mappings.push_back(readMapping(document[i], "[" + std::to_string(i) + "]"));
    } catch (const Failure& failure) {
        result.mappings.clear();
        result.error = failure.error;
    }
    return result;
}

}  // namespace orvane
