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

namespace {

// Boost's hash_combine: order-sensitive, so the case position and the values it wraps all count.
void combine(std::size_t& seed, std::size_t value) { seed ^= value + 0x9E3779B97F4A7C15ULL + (seed << 6) + (seed >> 2); }

}  // namespace
}  // namespace orvane

using orvane::combine;

std::size_t std::hash<orvane::SourceKey>::operator()(const orvane::SourceKey& key) const noexcept {
    std::size_t seed = 0;
    combine(seed, static_cast<std::size_t>(key.kind()));
    combine(seed, static_cast<std::size_t>(key.rawKeyValue()));
    return seed;
}

std::size_t std::hash<orvane::Modifiers>::operator()(const orvane::Modifiers& m) const noexcept {
    std::size_t seed = 0;
    for (bool flag : {m.command, m.option, m.control, m.shift}) combine(seed, flag ? 1 : 0);
    return seed;
}

std::size_t std::hash<orvane::TargetAction>::operator()(const orvane::TargetAction& action) const noexcept {
    std::size_t seed = 0;
    combine(seed, static_cast<std::size_t>(action.kind()));
    if (action.kind() != orvane::TargetAction::Kind::block) combine(seed, static_cast<std::size_t>(orvane::rawValue(action.keyCode())));
    if (action.kind() == orvane::TargetAction::Kind::combination)
        combine(seed, std::hash<orvane::Modifiers>{}(action.modifiers()));
    return seed;
}

std::size_t std::hash<orvane::KeyMapping>::operator()(const orvane::KeyMapping& mapping) const noexcept {
    std::size_t seed = std::hash<orvane::Uuid>{}(mapping.id);
    combine(seed, std::hash<orvane::SourceKey>{}(mapping.sourceKey));
    combine(seed, std::hash<orvane::TargetAction>{}(mapping.targetAction));
    combine(seed, mapping.isEnabled ? 1 : 0);
    return seed;
}

std::size_t std::hash<orvane::RecordedKey>::operator()(const orvane::RecordedKey& key) const noexcept {
    std::size_t seed = std::hash<orvane::SourceKey>{}(key.sourceKey);
    combine(seed, std::hash<orvane::Modifiers>{}(key.modifiers));
    return seed;
}
