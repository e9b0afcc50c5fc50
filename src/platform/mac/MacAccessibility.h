// Accessibility trust on macOS: the system's own query, which can show the system's own request.
#pragma once

#include "platform/EventSystem.h"

namespace orvane {

// No instructions: the permission alert opens Privacy & Security → Accessibility in System Settings.
class MacAccessibility final : public Accessibility {
public:
    // AXIsProcessTrustedWithOptions with kAXTrustedCheckOptionPrompt set to `prompt`.
    bool isProcessTrusted(bool prompt) override;
    // CGPreflightListenEventAccess: Input Monitoring.
    bool mayListenToKeyboard() override;
};

}  // namespace orvane
