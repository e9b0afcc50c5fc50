// orvane-sim: checks a mapping list against key sequences, with no keyboard involved.
#include "Options.h"
#include "Script.h"
#include "Simulator.h"

#include <QCoreApplication>

#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

namespace {

int fail(const std::string& message) {
    std::cerr << "orvane-sim: " << message << '\n';
    return 2;
}

std::optional<std::string> readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::ostringstream bytes;
    bytes << file.rdbuf();
    if (file.bad()) return std::nullopt;
    return bytes.str();
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    using namespace orvane::sim;

    const auto parsed = parseOptions(std::vector<std::string>(argv + 1, argv + argc));
    if (const auto* error = std::get_if<std::string>(&parsed)) return fail(*error + "\n" + usage);
    const Options& options = std::get<Options>(parsed);

    std::string mappings;
    if (options.mappingsFile) {
        const auto bytes = readFile(*options.mappingsFile);
        if (!bytes) return fail("cannot read mappings file " + *options.mappingsFile);
        mappings = *bytes;
    }

    std::vector<ScriptItem> script;
    if (!options.printMappings) {
        std::string text;
        std::string name = "<stdin>";
        if (options.script) {
            name = *options.script;
            const auto bytes = readFile(name);
            if (!bytes) return fail("cannot read script " + name);
            text = *bytes;
        } else {
            text.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
        }
        auto result = parseScript(text);
        if (const auto* error = std::get_if<ScriptError>(&result))
            return fail(name + ":" + std::to_string(error->lineNumber) + ": " + error->reason);
        script = std::move(std::get<std::vector<ScriptItem>>(result));
    }
    return runSimulation(options, mappings, options.mappingsFile.has_value(), script);
}
