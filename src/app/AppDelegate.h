// The application's delegate: start-up and quit order, permission flow, windows and the status item.
#pragma once

#include "app/MenuShortcuts.h"
#include "app/StatusItem.h"
#include "app/WindowHost.h"
#include "ui/settings/SettingsActions.h"

#include <QObject>
#include <QTimer>

#include <memory>

namespace orvane {

class Accessibility;
class AlertPresenter;
class EventTapManager;
class InstanceChannel;
class MappingStore;
class UpdateChecker;
class UrlOpener;
class UserDefaults;

// Everything the delegate works with, owned elsewhere and outliving it.
struct AppServices {
    UserDefaults& defaults;
    MappingStore& store;
    EventTapManager& tapManager;
    UpdateChecker& updateChecker;
    Accessibility& accessibility;
    AlertPresenter& alerts;
    UrlOpener& urlOpener;
    StatusBar& statusBar;
    InstanceChannel& instanceChannel;
    WindowHost& windows;
    std::function<void()> terminate;  // the application's orderly quit
    std::function<void()> activate;   // brings the application in front of the others
    // Whether another application holds secure keyboard entry; empty where the platform has none.
    std::function<bool()> isSecureInputOn;
};

// Main thread only. While it exists, it is the settings panel's SettingsActions.
class AppDelegate : public QObject, public SettingsActions {
    Q_OBJECT
public:
    static inline const QString showMenuIconKey = QStringLiteral("Orvane.ShowMenuIcon");
    // What a later launch sends the running instance: open the configuration window.
    // "com.user.Orvane.OpenConfig"; a private instance's is "com.user.Orvane-<name>.OpenConfig".
    static QByteArray openConfigurationMessage();
    // How often the secure input state is read while interception runs.
    static constexpr int secureInputPollMs = 1000;
    static inline const QString accessibilitySettingsUrl =
        QStringLiteral("x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");

    static WindowLayout configurationWindowLayout();
    static WindowLayout debugWindowLayout();

    explicit AppDelegate(AppServices services, QObject* parent = nullptr);
    ~AppDelegate() override;

    // Start-up, once: status item, permission or tap start, update check, subscriptions (among them the
    // instance channel's messages; other messages than openConfigurationMessage are ignored).
    void applicationDidFinishLaunching();
    // The user reopened the running application. Always true.
    bool applicationShouldHandleReopen(bool hasVisibleWindows);
    // Quit: takes no more handovers, stops the tap and restores Caps Lock, whether or not the tap was running.
    void applicationWillTerminate();
    // The HID layer may have lost the user key mapping: while interception runs, the store decides
    // Caps Lock again (and so applies it again).
    void hidLayerWasReset();

    // Shows the configuration window, creating it on first use.
    Q_INVOKABLE void openConfiguration();
    // Shows the key event debugger window, creating it on first use.
    Q_INVOKABLE void openDebug() override;
    // Adds or removes the status item to match the "Orvane.ShowMenuIcon" setting.
    Q_INVOKABLE void updateMenuIconVisibility() override;
    // True unless the setting says false; a fresh installation shows the icon.
    bool showMenuIcon() const;

    void toggleInterception();
    void requestAccessibilityPermission();
    // Waits for any other alert on screen to be answered first.
    void showAccessibilityAlert();
    // The views' way to the permission alert (SettingsActions).
    void showPermissionHelp() override { showAccessibilityAlert(); }

    StatusItem* statusItem() const { return statusItem_.get(); }
    HostedWindow* configWindow() const { return configWindow_.get(); }
    HostedWindow* debugWindow() const { return debugWindow_.get(); }
    bool hasVisibleWindows() const;
    // Destroys the windows (remembering their frames); before the objects their views use go.
    void closeWindows();

private:
    void setupStatusItem();
    void updateStatusIcon();
    void buildMenu();
    // Polls the secure input state while the tap runs (where the platform has one), else forgets it.
    void followSecureInput();
    void readSecureInput();
    void openWindow(std::unique_ptr<HostedWindow>& window, const WindowLayout& layout);

    AppServices services_;
    std::unique_ptr<StatusItem> statusItem_;
    MenuShortcuts windowShortcuts_;  // the menu's shortcuts in our windows, with or without the item
    std::unique_ptr<HostedWindow> configWindow_;
    std::unique_ptr<HostedWindow> debugWindow_;
    QTimer secureInputPoll_;
    bool secureInputOn_ = false;
};

}  // namespace orvane
