#include "ui/settings/SettingsController.h"

#include "platform/DesktopWords.h"
#include "platform/Diagnostics.h"
#include "platform/LoginItem.h"
#include "store/UserDefaults.h"
#include "ui/settings/AppVersion.h"
#include "ui/settings/SettingsActions.h"

#include <QCoreApplication>

namespace orvane {

SettingsController::SettingsController(QObject* parent)
    : SettingsController(UserDefaults::shared(), LoginItem::shared(), parent) {}

SettingsController::SettingsController(UserDefaults& defaults, LoginItem& loginItem, QObject* parent)
    : QObject(parent), defaults_(defaults), loginItem_(loginItem), shownMenuIcon_(showMenuIcon()) {
    // The menu-bar icon can also change elsewhere (another window, another panel).
    connect(&defaults_, &UserDefaults::changed, this, [this] {
        if (showMenuIcon() == shownMenuIcon_) return;
        shownMenuIcon_ = showMenuIcon();
        emit showMenuIconChanged();
    });
}

bool SettingsController::loginItemEnabled() const { return loginItem_.status() == LoginItem::Status::enabled; }

void SettingsController::setLaunchAtLogin(bool launch) {
    if (launch == launchAtLogin_) return;
    launchAtLogin_ = launch;
    emit launchAtLoginChanged();

    const auto error = launch ? loginItem_.registerItem() : loginItem_.unregisterItem();
    launchAtLoginError_ = error ? tr("Launch at login could not be changed: %1").arg(*error) : QString();
    if (!error) return;
    diagnostics::printLine("Failed to update launch at login: " + error->toStdString());
    // Putting the checkbox back is itself a change; the failure stays what the panel says.
    const QString failure = launchAtLoginError_;
    setLaunchAtLogin(loginItemEnabled());
    if (launchAtLoginError_.isEmpty()) launchAtLoginError_ = failure;
    emit launchAtLoginChanged();
}

// An earlier failure is old news once the panel opens again.
void SettingsController::refresh() {
    launchAtLoginError_.clear();
    setLaunchAtLogin(loginItemEnabled());
    emit launchAtLoginChanged();
}

QString SettingsController::showMenuIconTitle() const { return DesktopWords::shared().statusIconSetting; }

bool SettingsController::showMenuIcon() const { return defaults_.boolValue(QLatin1String(showMenuIconKey), true); }

void SettingsController::setShowMenuIcon(bool show) {
    if (show == showMenuIcon()) return;
    defaults_.setBool(QLatin1String(showMenuIconKey), show);
    // Notifies even when the write failed, so that the checkbox shows the stored value again.
    shownMenuIcon_ = showMenuIcon();
    emit showMenuIconChanged();
    if (SettingsActions* actions = SettingsActions::current()) actions->updateMenuIconVisibility();
}

QString SettingsController::versionString() const { return applicationVersionString(); }

void SettingsController::openDebug() {
    if (SettingsActions* actions = SettingsActions::current()) actions->openDebug();
}

void SettingsController::quit() { QCoreApplication::quit(); }

}  // namespace orvane
