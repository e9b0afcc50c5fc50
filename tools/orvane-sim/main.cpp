// orvane-sim: checks a mapping list against key sequences, with no keyboard involved.
#include "Options.h"
#include "Script.h"
#include "Simulator.h"

#include <QCoreApplication>

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>

namespace {

int fail(const std::string& message) {
    std::cerr << "orvane-sim: " << message << '\n';
    return 2;
}

// Mapping lists and scripts are text of a few megabytes at most; more is a mistake (a device such
// as /dev/zero, a wrong file), not input.
constexpr std::size_t maxInputBytes = 64u << 20;

// A file's bytes, or (error not empty) why they cannot be had.
struct FileContents {
    std::string bytes;
    std::string error;
};

FileContents readFile(const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) return {{}, "is a directory"};
    std::ifstream file(path, std::ios::binary);
    if (!file) return {{}, "cannot open it"};
    FileContents contents;
    char chunk[65536];
    while (file.read(chunk, sizeof chunk) || file.gcount() > 0) {
        contents.bytes.append(chunk, static_cast<std::size_t>(file.gcount()));
        if (contents.bytes.size() > maxInputBytes) return {{}, "larger than 64 MiB"};
    }
    if (file.bad()) return {{}, "read error"};
    return contents;
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
        FileContents file = readFile(*options.mappingsFile);
        if (!file.error.empty()) return fail("cannot read mappings file " + *options.mappingsFile + ": " + file.error);
        mappings = std::move(file.bytes);
    }

    std::vector<ScriptItem> script;
    if (!options.printMappings) {
        std::string text;
        std::string name = "<stdin>";
        if (options.script) {
            name = *options.script;
            FileContents file = readFile(name);
            if (!file.error.empty()) return fail("cannot read script " + name + ": " + file.error);
            text = std::move(file.bytes);
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
