// The simulator's script: one item per line, parsed completely before anything runs.
#pragma once

#include "platform/tapchain/PlatformEvent.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace orvane::sim {

struct ScriptItem {
    enum class Kind { event, tapDisabledByTimeout, tapDisabledByUserInput, stop, start, record, recordWithModifiers, cancel, wait };
    int lineNumber = 0;  // physical line in the script, from 1
    Kind kind = Kind::event;
    PlatformEvent event;  // for Kind::event
    std::int64_t milliseconds = 0;  // for Kind::wait: how far the virtual clock moves on
};

struct ScriptError {
    int lineNumber;
    std::string reason;
};

// Blank lines and lines whose first non-blank character is '#' are skipped.
std::variant<std::vector<ScriptItem>, ScriptError> parseScript(std::string_view text);

}  // namespace orvane::sim
