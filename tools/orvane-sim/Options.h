// The simulator's command line.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace orvane::sim {

struct Options {
    enum class CapsHid { none, direct, f18 };

    std::optional<std::string> mappingsFile;  // bytes stored as the mapping list; none: nothing stored
    CapsHid capsHid = CapsHid::none;           // the stored Caps Lock flags at start
    std::string hidutil = "/usr/bin/hidutil";
    bool untrusted = false;
    bool capture = false;
    bool filterNoise = true;
    bool printMappings = false;
    bool help = false;  // print the usage and do nothing else
    std::optional<std::string> script;  // none: standard input
};

inline constexpr const char* usage =
    "usage: orvane-sim [--mappings FILE] [--caps-hid none|direct|f18] [--hidutil PATH] [--untrusted] [--capture] "
    "[--no-filter] [--print-mappings] [--help] [SCRIPT]";

// The error is one line saying what is wrong.
std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments);

}  // namespace orvane::sim
