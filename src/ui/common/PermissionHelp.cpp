#include "ui/common/PermissionHelp.h"

#include "platform/EventSystem.h"
#include "ui/settings/SettingsActions.h"

namespace orvane::permission {

bool canReadKeyboard() { return Accessibility::shared().isProcessTrusted(false); }

bool canListenToKeyboard() { return Accessibility::shared().mayListenToKeyboard(); }

QString missingText(const QString& consequence) {
    return QStringLiteral("Orvane is not allowed to read the keyboard, so %1.").arg(consequence);
}

QString helpButtonTitle() { return QStringLiteral("How to Allow..."); }

void showHelp() {
    if (SettingsActions* actions = SettingsActions::current()) actions->showPermissionHelp();
}

}  // namespace orvane::permission
