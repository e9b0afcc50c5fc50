// How a mapping takes effect (HID layer, event tap or both), and the badge that tells the user.
#pragma once

#include "model/Mapping.h"

#include <QString>

namespace orvane {

enum class RemapMethod { directHID, hidPlusTap, tapOnly };

// Caps Lock is remapped in the HID layer, straight to its target or via F18 for the tap to finish;
// every other key, media keys included, only through the tap. capsLockDirectHID is the store's
// single flag, so all Caps Lock rows agree.
RemapMethod remapMethod(const SourceKey& source, bool capsLockDirectHID);

struct MethodBadge {
    QString text;
    QString colorName;  // a system colour of the theme: "green", "blue" or "orange"
    QString tooltip;
};

MethodBadge methodBadge(RemapMethod method);

}  // namespace orvane
