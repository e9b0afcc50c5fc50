#include "app/VersionComparison.h"

#include <algorithm>
#include <charconv>

namespace orvane {

std::optional<std::int64_t> parseDecimalInt64(std::string_view text) {
    // from_chars takes a "-" but not a "+"; a "+" must still be followed by a digit, so "+-1" fails.
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (text.empty() || text.front() < '0' || text.front() > '9') return std::nullopt;
    }
    if (text.empty()) return std::nullopt;
    std::int64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, 10);
    if (error != std::errc() || stop != end) return std::nullopt;
    return value;
}

std::vector<std::int64_t> versionComponents(std::string_view version) {
    std::vector<std::int64_t> components;
    while (true) {
        const auto dot = version.find('.');
        const std::string_view piece = version.substr(0, dot);
        if (!piece.empty()) {
            if (const auto value = parseDecimalInt64(piece)) components.push_back(*value);
        }
        if (dot == std::string_view::npos) break;
        version.remove_prefix(dot + 1);
    }
    return components;
}

std::int64_t buildNumberFromText(std::string_view text) { return parseDecimalInt64(text).value_or(0); }

bool isNewerVersion(std::string_view remoteVersion, std::int64_t remoteBuild, std::string_view currentVersion,
                    std::int64_t currentBuild) {
    const auto remote = versionComponents(remoteVersion);
    const auto current = versionComponents(currentVersion);
    const auto count = std::max(remote.size(), current.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::int64_t r = i < remote.size() ? remote[i] : 0;
        const std::int64_t c = i < current.size() ? current[i] : 0;
        if (r != c) return r > c;
    }
    return currentBuild < remoteBuild;
}

}  // namespace orvane
