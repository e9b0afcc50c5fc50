#include "app/AppDelegate.h"

#include "app/AlertPresenter.h"
#include "app/UpdateChecker.h"
#include "app/UrlOpener.h"
#include "interception/EventTapManager.h"
#include "platform/EventSystem.h"
#include "platform/InstanceChannel.h"
#include "platform/PrivateInstance.h"
#include "store/MappingStore.h"

#include <QQuickView>
#include <QTimer>

namespace orvane {

QByteArray AppDelegate::openConfigurationMessage() {
    return (forThisInstance(QStringLiteral("com.user.Orvane")) + QStringLiteral(".OpenConfig")).toUtf8();
}

// The views are files of the QML module Orvane, under its resource prefix.
WindowLayout AppDelegate::configurationWindowLayout() {
    return {QStringLiteral("Orvane"), QSize(500, 400), QUrl(QStringLiteral("qrc:/qt/qml/Orvane/MappingListView.qml")),
            QStringLiteral("ConfigWindow")};
}

WindowLayout AppDelegate::debugWindowLayout() {
    return {QStringLiteral("Key Event Debugger"), QSize(550, 500), QUrl(QStringLiteral("qrc:/qt/qml/Orvane/DebugView.qml")),
            QStringLiteral("DebugWindow")};
}

AppDelegate::AppDelegate(AppServices services, QObject* parent) : QObject(parent), services_(std::move(services)) {
    SettingsActions::setCurrent(this);
    secureInputPoll_.setInterval(secureInputPollMs);
    connect(&secureInputPoll_, &QTimer::timeout, this, &AppDelegate::readSecureInput);
    buildMenu();  // the shortcuts, for windows opened before the launch completes
}

AppDelegate::~AppDelegate() {
    if (SettingsActions::current() == this) SettingsActions::setCurrent(nullptr);
}

bool AppDelegate::showMenuIcon() const { return services_.defaults.boolValue(showMenuIconKey, true); }

void AppDelegate::applicationDidFinishLaunching() {
    if (showMenuIcon()) setupStatusItem();
    if (services_.accessibility.isProcessTrusted(false)) services_.tapManager.start();
    else requestAccessibilityPermission();
    services_.updateChecker.checkForUpdatesIfNeeded();
    // The status icon, the menu and the secure input watch follow the tap state, starting with the state now.
    connect(&services_.tapManager, &EventTapManager::isRunningChanged, this, [this] {
        followSecureInput();
        updateStatusIcon();
        buildMenu();
    }, Qt::QueuedConnection);
    followSecureInput();
    updateStatusIcon();
    buildMenu();
    connect(&services_.defaults, &UserDefaults::changed, this, &AppDelegate::updateMenuIconVisibility, Qt::QueuedConnection);
    connect(&services_.instanceChannel, &InstanceChannel::messageReceived, this, [this](const QByteArray& message) {
        if (message == openConfigurationMessage()) openConfiguration();
    }, Qt::QueuedConnection);
}

bool AppDelegate::applicationShouldHandleReopen(bool hasVisibleWindows) {
    if (!(hasVisibleWindows && showMenuIcon())) openConfiguration();
    return true;
}

void AppDelegate::applicationWillTerminate() {
    // A launch from now on must not hand over to an instance that is going: it waits and runs itself.
    services_.instanceChannel.stopListening();
    // Decisions still queued would land after the final clear; a hung tool is waited for only once.
    services_.store.beginQuit();
    services_.tapManager.stopForGood();
    services_.store.clearHIDRemapping();
}

// While interception is off the HID layer holds no mapping of ours, and must not get one back.
void AppDelegate::hidLayerWasReset() {
    if (services_.tapManager.isRunning()) services_.store.updateCapsLockHIDRemap();
}

void AppDelegate::requestAccessibilityPermission() {
    if (services_.accessibility.isProcessTrusted(true)) return;
    QTimer::singleShot(0, this, &AppDelegate::showAccessibilityAlert);
}

void AppDelegate::showAccessibilityAlert() {
    services_.alerts.whenFree([this] {
        AlertPresenter::Alert alert;
        alert.style = AlertPresenter::Alert::Style::warning;
        alert.message = QStringLiteral("Accessibility Permission Required");
        alert.informativeText = QStringLiteral(
            "Orvane needs Accessibility permission to intercept and remap keyboard events.\n\n"
            "Please grant permission in System Settings > Privacy & Security > Accessibility, then restart the app.");
        alert.buttons = {QStringLiteral("Open System Settings"), QStringLiteral("Later")};
        QString target = accessibilitySettingsUrl;
        const auto instructions = services_.accessibility.instructions();
        if (instructions) {
            alert.message = QString::fromStdString(instructions->title);
            alert.informativeText = QString::fromStdString(instructions->informativeText);
            for (const std::string& command : instructions->commands) alert.lines.append(QString::fromStdString(command));
            alert.buttons.front() = QString::fromStdString(instructions->openButtonTitle);
            target = QString::fromStdString(instructions->url);
        }
        if (services_.alerts.present(alert) != AlertPresenter::firstButtonResponse) return;
        const QUrl url(target, QUrl::StrictMode);
        if (!url.isValid()) return;
        if (instructions) openOrShow(services_.urlOpener, services_.alerts, url, QStringLiteral("Could Not Open the Instructions"));
        else services_.urlOpener.open(url);
    });
}

void AppDelegate::openConfiguration() { openWindow(configWindow_, configurationWindowLayout()); }

void AppDelegate::openDebug() { openWindow(debugWindow_, debugWindowLayout()); }

void AppDelegate::openWindow(std::unique_ptr<HostedWindow>& window, const WindowLayout& layout) {
    if (!window) {
        window = services_.windows.create(layout);
        window->view().installEventFilter(&windowShortcuts_);
    }
    window->bringToFront();
    if (services_.activate) services_.activate();
}

bool AppDelegate::hasVisibleWindows() const {
    return (configWindow_ && configWindow_->isVisible()) || (debugWindow_ && debugWindow_->isVisible());
}

void AppDelegate::closeWindows() {
    configWindow_.reset();
    debugWindow_.reset();
}

// ---- Status item ----------------------------------------------------------------------------

void AppDelegate::setupStatusItem() {
    statusItem_ = services_.statusBar.createItem();
    if (!statusItem_) return;
    statusItem_->setIcon(QStringLiteral("keyboard"), QStringLiteral("Orvane"));
    statusItem_->setMenuWillOpen([this] { buildMenu(); });
    updateStatusIcon();
    buildMenu();
}

void AppDelegate::updateStatusIcon() {
    if (statusItem_) statusItem_->setIcon(statusIconName(services_.tapManager.isRunning()), QStringLiteral("Orvane"));
}

void AppDelegate::buildMenu() {
    StatusMenuActions actions;
    actions.toggleInterception = [this] { toggleInterception(); };
    actions.openConfiguration = [this] { openConfiguration(); };
    actions.openDebug = [this] { openDebug(); };
    actions.quit = services_.terminate;
    const auto items =
        buildStatusMenu(services_.tapManager.isRunning(), services_.store.enabledMappings().size(), secureInputOn_, actions);
    windowShortcuts_.setItems(items);
    if (statusItem_) statusItem_->setMenu(items);
}

void AppDelegate::followSecureInput() {
    if (services_.isSecureInputOn && services_.tapManager.isRunning()) {
        if (!secureInputPoll_.isActive()) secureInputPoll_.start();
        readSecureInput();
    } else {
        secureInputPoll_.stop();
        secureInputOn_ = false;
    }
}

void AppDelegate::readSecureInput() {
    const bool on = services_.isSecureInputOn();
    if (on == secureInputOn_) return;
    secureInputOn_ = on;
    buildMenu();
}

void AppDelegate::updateMenuIconVisibility() {
    const bool show = showMenuIcon();
    if (show && !statusItem_) setupStatusItem();
    else if (!show && statusItem_) statusItem_.reset();
}

void AppDelegate::toggleInterception() {
    if (services_.tapManager.isRunning()) {
        services_.tapManager.stop();
    } else if (services_.accessibility.isProcessTrusted(false)) {
        services_.tapManager.start();
    } else {
        requestAccessibilityPermission();
    }
    buildMenu();
}

}  // namespace orvane
