// Input quoted in an error line: never the whole of a long token, never a control character.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

namespace orvane::sim {

// At most `limit` bytes of `text`, each byte outside printable ASCII written as \xNN, and "..." where
// the rest was left out.
inline std::string printable(std::string_view text, std::size_t limit = 32) {
    std::string shown;
    for (const char c : text.substr(0, limit)) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7f) {
            shown += c;
        } else {
            char escaped[5];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
            shown += escaped;
        }
    }
    if (text.size() > limit) shown += "...";
    return shown;
}

}  // namespace orvane::sim
