#include "Options.h"

#include "Printable.h"

namespace orvane::sim {

std::variant<Options, std::string> parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        std::string argument = arguments[i];
        std::optional<std::string> inlineValue;
        if (argument.rfind("--", 0) == 0) {
            if (const auto equals = argument.find('='); equals != std::string::npos) {
                inlineValue = argument.substr(equals + 1);
                argument.resize(equals);
            }
        }
        auto value = [&]() -> std::optional<std::string> {
            if (inlineValue) return inlineValue;
            if (i + 1 < arguments.size()) return arguments[++i];
            return std::nullopt;
        };
        auto flag = [&](bool& target) -> std::optional<std::string> {
            if (inlineValue) return "option " + argument + " takes no value";
            target = true;
            return std::nullopt;
        };
        std::optional<std::string> error;
        if (argument == "--mappings") {
            options.mappingsFile = value();
            if (!options.mappingsFile) error = "option --mappings needs a FILE";
        } else if (argument == "--hidutil") {
            const auto path = value();
            if (!path) error = "option --hidutil needs a PATH";
            else options.hidutil = *path;
        } else if (argument == "--caps-hid") {
            const auto mode = value();
            if (mode == "none") options.capsHid = Options::CapsHid::none;
            else if (mode == "direct") options.capsHid = Options::CapsHid::direct;
            else if (mode == "f18") options.capsHid = Options::CapsHid::f18;
            else error = "option --caps-hid takes none, direct or f18";
        } else if (argument == "--untrusted") {
            error = flag(options.untrusted);
        } else if (argument == "--capture") {
            error = flag(options.capture);
        } else if (argument == "--no-filter") {
            bool noFilter = false;
            error = flag(noFilter);
            if (noFilter) options.filterNoise = false;
        } else if (argument == "--help" || argument == "-h") {
            options.help = true;
        } else if (argument == "--print-mappings") {
            error = flag(options.printMappings);
        } else if (argument.size() > 1 && argument[0] == '-') {
            error = "unknown option " + printable(argument);
        } else if (options.script) {
            error = "only one SCRIPT may be given";
        } else {
            options.script = argument;
        }
        if (error) return *error;
    }
    return options;
}

}  // namespace orvane::sim
