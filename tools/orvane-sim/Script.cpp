#include "Script.h"

#include "Printable.h"

#include "model/KeyCode.h"

#include <charconv>
#include <map>
#include <optional>
#include <sstream>

namespace orvane::sim {
namespace {

struct Malformed {
    std::string reason;
};

std::vector<std::string> words(std::string_view line) {
    std::istringstream stream{std::string(line)};
    std::vector<std::string> result;
    for (std::string word; stream >> word;) result.push_back(word);
    return result;
}

template <typename Integer>
std::optional<Integer> parseNumber(std::string_view text, int base = 10) {
    Integer value{};
    const auto* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base);
    if (text.empty() || error != std::errc() || stop != end) return std::nullopt;
    return value;
}

std::uint64_t parseHex(const std::string& text, const char* what) {
    if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X'))
        throw Malformed{std::string(what) + " must be 0x followed by hexadecimal digits"};
    const auto value = parseNumber<std::uint64_t>(std::string_view(text).substr(2), 16);
    if (!value) throw Malformed{std::string(what) + " is not a 64-bit hexadecimal word"};
    return *value;
}

std::int64_t parseInteger(const std::string& text, const char* what) {
    const auto value = parseNumber<std::int64_t>(text);
    if (!value) throw Malformed{std::string(what) + " is not a decimal integer"};
    return *value;
}

std::uint16_t parseKey(const std::string& text) {
    if (const auto key = keyCodeFromCaseName(text)) return static_cast<std::uint16_t>(rawValue(*key));
    const auto code = parseNumber<std::uint32_t>(text);
    if (!code) throw Malformed{"unknown key \"" + printable(text) + "\""};
    if (*code > 65535) throw Malformed{"key code " + printable(text) + " is above 65535"};
    return static_cast<std::uint16_t>(*code);
}

// name=value options after the fixed words; each name at most once and only the allowed ones.
std::map<std::string, std::string> options(const std::vector<std::string>& tokens, std::size_t from,
                                           std::initializer_list<const char*> allowed) {
    std::map<std::string, std::string> found;
    for (std::size_t i = from; i < tokens.size(); ++i) {
        const auto equals = tokens[i].find('=');
        const std::string name = tokens[i].substr(0, equals);
        bool known = equals != std::string::npos;
        if (known) {
            known = false;
            for (const char* option : allowed) known = known || name == option;
        }
        if (!known) throw Malformed{"unexpected \"" + printable(tokens[i]) + "\""};
        if (!found.emplace(name, tokens[i].substr(equals + 1)).second) throw Malformed{"\"" + printable(name) + "\" given twice"};
    }
    return found;
}

ScriptItem parseLine(const std::vector<std::string>& tokens) {
    const std::string& command = tokens[0];
    ScriptItem item;
    auto simple = [&](ScriptItem::Kind kind) {
        if (tokens.size() != 1) throw Malformed{"\"" + command + "\" takes no arguments"};
        item.kind = kind;
        return item;
    };
    if (command == "tapDisabledByTimeout") return simple(ScriptItem::Kind::tapDisabledByTimeout);
    if (command == "tapDisabledByUserInput") return simple(ScriptItem::Kind::tapDisabledByUserInput);
    if (command == "stop") return simple(ScriptItem::Kind::stop);
    if (command == "start") return simple(ScriptItem::Kind::start);
    if (command == "cancel") return simple(ScriptItem::Kind::cancel);
    if (command == "wait") {
        if (tokens.size() != 2) throw Malformed{"\"wait\" takes a number of milliseconds"};
        const auto milliseconds = parseNumber<std::uint32_t>(tokens[1]);
        if (!milliseconds) throw Malformed{"wait needs milliseconds from 0 to 4294967295"};
        item.kind = ScriptItem::Kind::wait;
        item.milliseconds = *milliseconds;
        return item;
    }
    if (command == "record") {
        if (tokens.size() == 2 && tokens[1] == "modifiers") {
            item.kind = ScriptItem::Kind::recordWithModifiers;
            return item;
        }
        return simple(ScriptItem::Kind::record);
    }

    item.kind = ScriptItem::Kind::event;
    PlatformEvent& event = item.event;
    if (command == "keyDown" || command == "keyUp" || command == "flagsChanged") {
        if (tokens.size() < 2) throw Malformed{"\"" + command + "\" needs a key"};
        event.type = command == "keyDown" ? 10 : command == "keyUp" ? 11 : 12;
        event.keyCode = parseKey(tokens[1]);
        const auto given = options(tokens, 2, {"flags", "userData"});
        if (event.type == 12 && !given.count("flags")) throw Malformed{"flagsChanged needs flags=HEX"};
        if (given.count("flags")) event.flags = parseHex(given.at("flags"), "flags");
        if (given.count("userData")) event.userData = parseInteger(given.at("userData"), "userData");
        return item;
    }
    if (command == "systemDefined") {
        event.type = 14;
        const auto given = options(tokens, 1, {"subtype", "data1", "userData"});
        if (given.count("userData")) event.userData = parseInteger(given.at("userData"), "userData");
        // Without a subtype the event does not convert to a system-defined event object.
        if (given.count("subtype")) {
            const auto subtype = parseInteger(given.at("subtype"), "subtype");
            if (subtype < -32768 || subtype > 32767) throw Malformed{"subtype is out of range"};
            SystemDefinedFields fields;
            fields.subtype = static_cast<std::int16_t>(subtype);
            if (given.count("data1")) fields.data1 = static_cast<std::int64_t>(parseHex(given.at("data1"), "data1"));
            event.systemDefined = fields;
        } else if (given.count("data1")) {
            parseHex(given.at("data1"), "data1");  // still checked, but the event carries no data1
        }
        return item;
    }
    if (command == "event") {
        if (tokens.size() != 2) throw Malformed{"\"event\" takes one type number"};
        const auto type = parseNumber<std::uint32_t>(tokens[1]);
        if (!type) throw Malformed{"event type is not a number"};
        if (*type == 10 || *type == 11 || *type == 12 || *type == 14)
            throw Malformed{"use keyDown, keyUp, flagsChanged or systemDefined for event type " + printable(tokens[1])};
        event.type = *type;
        return item;
    }
    throw Malformed{"unknown command \"" + printable(command) + "\""};
}

}  // namespace

std::variant<std::vector<ScriptItem>, ScriptError> parseScript(std::string_view text) {
    std::vector<ScriptItem> items;
    int lineNumber = 0;
    std::size_t start = 0;
    while (start <= text.size()) {
        const auto end = std::min(text.find('\n', start), text.size());
        std::string_view line = text.substr(start, end - start);
        ++lineNumber;
        start = end + 1;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const auto tokens = words(line);
        if (tokens.empty() || tokens[0][0] == '#') {
            if (end == text.size()) break;
            continue;
        }
        try {
            ScriptItem item = parseLine(tokens);
            item.lineNumber = lineNumber;
            items.push_back(item);
        } catch (const Malformed& malformed) {
            return ScriptError{lineNumber, malformed.reason};
        }
        if (end == text.size()) break;
    }
    return items;
}

}  // namespace orvane::sim
