// Version strings to components, build texts to numbers, and the newer-release decision.
#include "app/VersionComparison.h"

#include <gtest/gtest.h>

using namespace orvane;

TEST(VersionComparison, componentsKeepOnlyPiecesThatAreWholeDecimalIntegers) {
    const std::pair<const char*, std::vector<std::int64_t>> cases[] = {
        {"1.4.2", {1, 4, 2}},
        {"1.2beta.3", {1, 3}},
        {"2.0-rc1", {2}},
        {"..1..2.", {1, 2}},
        {"+7.-3.+.-.+-1", {7, -3}},
        {" 1.2 .0x10.1e3", {}},
        {"9223372036854775807.9223372036854775808.-9223372036854775808", {INT64_MAX, INT64_MIN}},
        {"", {}},
    };
    for (const auto& [version, components] : cases) EXPECT_EQ(versionComponents(version), components) << version;
}

TEST(VersionComparison, buildTextThatIsNoIntegerReadsAsZero) {
    const std::pair<const char*, std::int64_t> cases[] = {
        {"42", 42}, {"+42", 42}, {"-3", -3}, {"", 0}, {"42a", 0}, {" 42", 0}, {"4.2", 0}, {"99999999999999999999", 0}};
    for (const auto& [text, build] : cases) EXPECT_EQ(buildNumberFromText(text), build) << text;
}

TEST(VersionComparison, newerIsDecidedPerComponentThenByBuild) {
    // Remote version and build, running version and build, and whether the remote one is newer.
    const std::tuple<const char*, std::int64_t, const char*, std::int64_t, bool> cases[] = {
        {"1.10", 1, "1.9", 99, true},
        {"1.2", 5, "1.2.0", 4, true},
        {"1.2", 5, "1.2", 5, false},
        {"1.2.1", 0, "1.2", 9, true},
        {"1.99", 9, "2.0", 0, false},
        {"1.0", 9, "1.0.0.1", 0, false},
        {"", 1, "", 0, true},
        {"1.99999999999999999999", 0, "1.5", 0, false},  // the overflowing piece is dropped
        {"1.-1", 9, "1", 0, false},
    };
    for (const auto& [remote, remoteBuild, current, currentBuild, newer] : cases)
        EXPECT_EQ(isNewerVersion(remote, remoteBuild, current, currentBuild), newer)
            << remote << " (" << remoteBuild << ") against " << current << " (" << currentBuild << ")";
}
