// The one persistent form of a mapping list: compact JSON, written byte for byte, read strictly.
#pragma once

#include "model/Mapping.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

struct DecodingError {
    enum class Kind { typeMismatch, missingMember, dataCorrupted, malformedJson };

    Kind kind;
    std::string path;     // keys and indices to the failing value, e.g. "[0].targetAction"; empty for the document
    std::string message;  // what was wrong there

    // One line: the kind, the path and the message.
    std::string description() const;
};

// Compact UTF-8 JSON: members in field order, upper-case ids, every modifier flag written.
std::string encodeMappings(std::span<const KeyMapping> mappings);

struct DecodeResult {
    std::vector<KeyMapping> mappings;     // empty when decoding failed: there is no partial list
    std::optional<DecodingError> error;   // the first error met
};

// Never throws; any byte string is a valid input.
DecodeResult decodeMappings(std::string_view json);

}  // namespace orvane
