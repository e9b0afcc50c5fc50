#include "ui/mappings/RemapMethod.h"

namespace orvane {

RemapMethod remapMethod(const SourceKey& source, bool capsLockDirectHID) {
    if (source != SourceKey::regular(KeyCode::capsLock)) return RemapMethod::tapOnly;
    return capsLockDirectHID ? RemapMethod::directHID : RemapMethod::hidPlusTap;
}

MethodBadge methodBadge(RemapMethod method) {
    switch (method) {
    case RemapMethod::directHID:
        return {QStringLiteral("HID"), QStringLiteral("green"),
                QStringLiteral("Direct HID-layer remapping (instant, works without app)")};
    case RemapMethod::hidPlusTap:
        return {QStringLiteral("HID+Tap"), QStringLiteral("blue"),
                QStringLiteral("HID-layer + event tap (for combinations/block)")};
    case RemapMethod::tapOnly:
        break;
    }
    return {QStringLiteral("Tap"), QStringLiteral("orange"), QStringLiteral("Event tap interception (requires app running)")};
}

}  // namespace orvane
