#include "ui/UiTypes.h"

#include "ui/settings/SettingsController.h"

#include <QQmlEngine>

namespace orvane::ui {

void registerSettingsTypes() { qmlRegisterType<SettingsController>("Orvane", 1, 0, "SettingsController"); }

}  // namespace orvane::ui
