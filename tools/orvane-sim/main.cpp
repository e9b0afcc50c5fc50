// orvane-sim: checks a mapping list against key sequences, with no keyboard involved.
#include "Options.h"
#include "Printable.h"
#include "Script.h"
#include "Simulator.h"

#include <QCoreApplication>

#include <filesystem>
#include <fstream>
#include <iostream>

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

FileContents readAll(std::istream& input) {
    FileContents contents;
    char chunk[65536];
    while (input.read(chunk, sizeof chunk) || input.gcount() > 0) {
        contents.bytes.append(chunk, static_cast<std::size_t>(input.gcount()));
        if (contents.bytes.size() > maxInputBytes) return {{}, "larger than 64 MiB"};
    }
    if (input.bad()) return {{}, "read error"};
    return contents;
}

FileContents readFile(const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) return {{}, "is a directory"};
    std::ifstream file(path, std::ios::binary);
    if (!file) return {{}, "cannot open it"};
    return readAll(file);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    using namespace orvane::sim;

    const auto parsed = parseOptions(std::vector<std::string>(argv + 1, argv + argc));
    if (const auto* error = std::get_if<std::string>(&parsed)) return fail(*error + "\n" + usage);
    const Options& options = std::get<Options>(parsed);
    if (options.help) {
        std::cout << usage << '\n';
        return 0;
    }

    std::string mappings;
    if (options.mappingsFile) {
        FileContents file = readFile(*options.mappingsFile);
        if (!file.error.empty()) return fail("cannot read mappings file " + printable(*options.mappingsFile, 256) + ": " + file.error);
        mappings = std::move(file.bytes);
    }

    std::vector<ScriptItem> script;
    if (!options.printMappings) {
        std::string text;
        const std::string name = options.script ? printable(*options.script, 256) : "<stdin>";
        FileContents file = options.script ? readFile(*options.script) : readAll(std::cin);
        if (!file.error.empty()) return fail("cannot read script " + name + ": " + file.error);
        text = std::move(file.bytes);
        auto result = parseScript(text);
        if (const auto* error = std::get_if<ScriptError>(&result))
            return fail(name + ":" + std::to_string(error->lineNumber) + ": " + error->reason);
        script = std::move(std::get<std::vector<ScriptItem>>(result));
    }
    return runSimulation(options, mappings, options.mappingsFile.has_value(), script);
}
