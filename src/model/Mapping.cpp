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

std::string RecordedKey::label() const { return modifiers.modifierSymbols() + sourceKey.symbol(); }

}  // namespace orvane
