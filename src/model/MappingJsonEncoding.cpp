// Encoding a mapping list: the exact bytes of the persistent form (see MappingJson.h).
#include "model/MappingJson.h"

#include <string>

namespace orvane {
namespace {

void appendKeyObject(std::string& out, int raw) {
    out += "{\"_0\":";
    out += std::to_string(raw);
}

void appendBool(std::string& out, bool value) { out += value ? "true" : "false"; }

void appendModifiers(std::string& out, const Modifiers& m) {
    out += "{\"command\":";
    appendBool(out, m.command);
    out += ",\"option\":";
    appendBool(out, m.option);
    out += ",\"control\":";
    appendBool(out, m.control);
    out += ",\"shift\":";
    appendBool(out, m.shift);
    out += '}';
}

void appendMapping(std::string& out, const KeyMapping& mapping) {
    out += "{\"id\":\"";
    out += mapping.id.toString();
    out += "\",\"sourceKey\":{\"";
    out += mapping.sourceKey.isRegular() ? "regular" : "system";
    out += "\":";
    appendKeyObject(out, mapping.sourceKey.rawKeyValue());
    out += "}},\"targetAction\":{";
    const auto& action = mapping.targetAction;
    switch (action.kind()) {
    case TargetAction::Kind::block: out += "\"block\":{}"; break;
    case TargetAction::Kind::key:
        out += "\"key\":";
        appendKeyObject(out, rawValue(action.keyCode()));
        out += '}';
        break;
    case TargetAction::Kind::combination:
        out += "\"combination\":";
        appendKeyObject(out, rawValue(action.keyCode()));
        out += ",\"_1\":";
        appendModifiers(out, action.modifiers());
        out += '}';
        break;
    case TargetAction::Kind::modifiers:
        out += "\"modifiers\":{\"_0\":";
        appendModifiers(out, action.modifiers());
        out += '}';
        break;
    }
    out += "},\"isEnabled\":";
    appendBool(out, mapping.isEnabled);
    // Written only when there is one, so that lists without alone keys keep their bytes.
    if (mapping.aloneKey) {
        out += ",\"alone\":";
        appendKeyObject(out, rawValue(*mapping.aloneKey));
        out += '}';
    }
    out += '}';
}

}  // namespace

std::string encodeMappings(std::span<const KeyMapping> mappings) {
    std::string out;
    out.reserve(2 + mappings.size() * 200);
    out += '[';
    for (std::size_t i = 0; i < mappings.size(); ++i) {
        if (i > 0) out += ',';
        appendMapping(out, mappings[i]);
    }
    out += ']';
    return out;
}

}  // namespace orvane
