// The groups in which the key picker shows the ordinary keys.
#pragma once

#include "model/KeyCode.h"

#include <optional>
#include <span>
#include <string_view>

namespace orvane {

enum class KeyCategory { letters, numbers, fKeys, modifiers, special, navigation, numpad, media };

inline constexpr std::size_t keyCategoryCount = 8;

std::span<const KeyCategory> allKeyCategories();
// The title on the picker's tab; it is also the category's raw value.
std::string_view title(KeyCategory category);
// Exact, case-sensitive match of a title.
std::optional<KeyCategory> keyCategoryFromTitle(std::string_view title);
// The keys of the category in the picker's order (which is not always declared order).
std::span<const KeyCode> keys(KeyCategory category);
KeyCategory categoryOf(KeyCode key);

}  // namespace orvane
