// The mapping records: a source key, the action that replaces it, and what the recorder hands back.
#pragma once

#include "model/KeyCode.h"
#include "model/SystemKeyID.h"
#include "model/Uuid.h"

#include <cstdint>
#include <optional>
#include <string>

namespace orvane {

// The key a mapping listens to: an ordinary key or a media/system key.
class SourceKey {
public:
    enum class Kind : std::uint8_t { regular, system };

    static constexpr SourceKey regular(KeyCode key) { return SourceKey(Kind::regular, rawValue(key)); }
    static constexpr SourceKey system(SystemKeyID key) { return SourceKey(Kind::system, rawValue(key)); }

    constexpr Kind kind() const { return kind_; }
    constexpr bool isRegular() const { return kind_ == Kind::regular; }
    // Preconditions: the matching kind.
    constexpr KeyCode keyCode() const { return static_cast<KeyCode>(raw_); }
    constexpr SystemKeyID systemKey() const { return static_cast<SystemKeyID>(raw_); }
    // The key's raw value: virtual key code or NX key type.
    constexpr int rawKeyValue() const { return raw_; }

    std::string displayName() const;
    std::string symbol() const;

    friend constexpr bool operator==(const SourceKey&, const SourceKey&) = default;

private:
    constexpr SourceKey(Kind kind, int raw) : kind_(kind), raw_(raw) {}
    Kind kind_;
    int raw_;
};

struct Modifiers {
    bool command = false;
    bool option = false;
    bool control = false;
    bool shift = false;

    // The modifiers whose flags (Command, Option, Control, Shift) are set in an event's flags word.
    static constexpr Modifiers fromEventFlags(std::uint64_t flags) {
        return {.command = (flags & EventFlag::command) != 0,
                .option = (flags & EventFlag::alternate) != 0,
                .control = (flags & EventFlag::control) != 0,
                .shift = (flags & EventFlag::shift) != 0};
    }
    // The flags word of these modifiers: their bits ORed.
    constexpr std::uint64_t eventFlags() const {
        return (command ? EventFlag::command : 0) | (option ? EventFlag::alternate : 0) | (control ? EventFlag::control : 0) |
               (shift ? EventFlag::shift : 0);
    }

    constexpr bool isEmpty() const { return !command && !option && !control && !shift; }
    // Glyphs of the set flags in the order ⌃ ⌥ ⇧ ⌘ (not the field order).
    std::string modifierSymbols() const;

    friend constexpr bool operator==(const Modifiers&, const Modifiers&) = default;
};

// What happens in place of the source key. Targets are always ordinary keys, or modifiers alone:
// "hold these modifiers while the source is held".
class TargetAction {
public:
    enum class Kind : std::uint8_t { block, key, combination, modifiers };

    static constexpr TargetAction block() { return TargetAction(Kind::block, KeyCode::a, {}); }
    static constexpr TargetAction key(KeyCode key) { return TargetAction(Kind::key, key, {}); }
    static constexpr TargetAction combination(KeyCode key, Modifiers modifiers) {
        return TargetAction(Kind::combination, key, modifiers);
    }
    static constexpr TargetAction modifiersOnly(Modifiers modifiers) { return TargetAction(Kind::modifiers, KeyCode::a, modifiers); }

    constexpr Kind kind() const { return kind_; }
    // Meaningful for key and combination only.
    constexpr KeyCode keyCode() const { return key_; }
    constexpr bool hasKey() const { return kind_ == Kind::key || kind_ == Kind::combination; }
    // Meaningful for combination and modifiers only (empty otherwise).
    constexpr const Modifiers& modifiers() const { return modifiers_; }

    // The action as glyphs: "⇧⌘K" for a combination, "⌃⌥⇧⌘" for modifiers alone, the key's symbol
    // for a key, "Block" for a block.
    std::string label() const;

    friend constexpr bool operator==(const TargetAction&, const TargetAction&) = default;

private:
    constexpr TargetAction(Kind kind, KeyCode key, Modifiers modifiers) : kind_(kind), key_(key), modifiers_(modifiers) {}
    Kind kind_;
    KeyCode key_;  // fixed for block and modifiers so that equal actions compare equal
    Modifiers modifiers_;
};

struct KeyMapping {
    Uuid id;
    SourceKey sourceKey = SourceKey::regular(KeyCode::a);
    TargetAction targetAction = TargetAction::block();
    bool isEnabled = true;
    // The key tapped when the source is pressed and released with no other key in between, within
    // the alone time; the target is then the source's held role only. None: the target alone, as ever.
    std::optional<KeyCode> aloneKey = std::nullopt;

    // "alone ⎋", or empty without an alone key.
    std::string aloneLabel() const;
    // The row's text: "⇪ → ⌃", and with an alone key "⇪ → ⌃  · alone ⎋".
    std::string summary() const;

    friend bool operator==(const KeyMapping&, const KeyMapping&) = default;
};

// A key pressed in the recorder or chosen in the picker, with the modifiers held with it.
struct RecordedKey {
    SourceKey sourceKey = SourceKey::regular(KeyCode::a);
    Modifiers modifiers;

    // Modifier glyphs followed directly by the key's symbol, e.g. "⇧⌘A".
    std::string label() const;

    friend bool operator==(const RecordedKey&, const RecordedKey&) = default;
};

}  // namespace orvane
