// Comparison of dotted version strings and build numbers, as the update check uses it. Plain C++, no Qt.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace orvane {

// A whole string as a signed 64-bit decimal integer: an optional leading "+" or "-", then digits
// only. No spaces, no fraction; a value out of range gives no result.
std::optional<std::int64_t> parseDecimalInt64(std::string_view text);

// The numeric components of a version: the pieces between dots, empty pieces dropped, each read by
// parseDecimalInt64 and dropped when it does not convert. "1.2beta.3" gives [1, 3], "2.0-rc1" gives [2].
std::vector<std::int64_t> versionComponents(std::string_view version);

// The running build number from its text: 0 when the text is empty or not an integer.
std::int64_t buildNumberFromText(std::string_view text);

// True when the remote release is newer: the components compared in order with missing ones read
// as 0; when all are equal (or there are none), the higher build number wins.
bool isNewerVersion(std::string_view remoteVersion, std::int64_t remoteBuild, std::string_view currentVersion,
                    std::int64_t currentBuild);

}  // namespace orvane
