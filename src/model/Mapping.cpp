#include "model/Mapping.h"

namespace orvane {

std::string SourceKey::displayName() const {
    return std::string(isRegular() ? orvane::displayName(keyCode()) : orvane::displayName(systemKey()));
}

std::string SourceKey::symbol() const {
    return std::string(isRegular() ? orvane::symbol(keyCode()) : orvane::symbol(systemKey()));
}

std::string Modifiers::modifierSymbols() const {
    std::string glyphs;
    if (control) glyphs += "\u2303";
    if (option) glyphs += "\u2325";
    if (shift) glyphs += "\u21E7";
    if (command) glyphs += "\u2318";
    return glyphs;
}

std::string TargetAction::label() const {
    switch (kind_) {
    case Kind::block: return "Block";
    case Kind::key: return std::string(symbol(key_));
    case Kind::combination: return modifiers_.modifierSymbols() + std::string(symbol(key_));
    case Kind::modifiers: return modifiers_.modifierSymbols();
    }
    return {};
}

std::string KeyMapping::aloneLabel() const { return aloneKey ? "alone " + std::string(symbol(*aloneKey)) : std::string(); }

std::string KeyMapping::summary() const {
    std::string text = sourceKey.symbol() + " \u2192 " + targetAction.label();
    if (aloneKey) text += "  \u00B7 " + aloneLabel();
    return text;
}

std::string RecordedKey::label() const { return modifiers.modifierSymbols() + sourceKey.symbol(); }

}  // namespace orvane
