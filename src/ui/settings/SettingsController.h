// The settings panel's state and commands: launch at login, the menu-bar icon, the debugger, quitting.
#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

namespace orvane {

class LoginItem;
class UserDefaults;

// Main thread only. One per panel; the login item's record and the defaults are the only truth.
class SettingsController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool launchAtLogin READ launchAtLogin WRITE setLaunchAtLogin NOTIFY launchAtLoginChanged)
    Q_PROPERTY(bool showMenuIcon READ showMenuIcon WRITE setShowMenuIcon NOTIFY showMenuIconChanged)
    Q_PROPERTY(QString versionString READ versionString CONSTANT)
    Q_PROPERTY(QString launchAtLoginError READ launchAtLoginError NOTIFY launchAtLoginChanged)
    Q_PROPERTY(QString showMenuIconTitle READ showMenuIconTitle CONSTANT)

public:
    static constexpr char showMenuIconKey[] = "Orvane.ShowMenuIcon";

    // Over the shared defaults and login item (how QML makes it).
    explicit SettingsController(QObject* parent = nullptr);
    SettingsController(UserDefaults& defaults, LoginItem& loginItem, QObject* parent = nullptr);

    bool launchAtLogin() const { return launchAtLogin_; }
    // Every change registers (true) or unregisters (false) the login item, whatever its cause. A
    // failure prints "Failed to update launch at login: <description>" and sets the value back to
    // what the system reports, which is itself a change applied the same way.
    void setLaunchAtLogin(bool launch);
    // Why the latest change of launchAtLogin failed, for the panel to say; empty after one that worked.
    QString launchAtLoginError() const { return launchAtLoginError_; }
    // "Show menu bar icon", in the desktop's words.
    QString showMenuIconTitle() const;

    // True while "Orvane.ShowMenuIcon" is absent.
    bool showMenuIcon() const;
    // Writes the setting at once, then has the application add or remove the status item (SettingsActions).
    void setShowMenuIcon(bool show);

    QString versionString() const;

    // Mirrors the system's record into launchAtLogin; the panel calls it each time it opens.
    Q_INVOKABLE void refresh();
    // Shows the key event debugger (the panel closes itself first).
    Q_INVOKABLE void openDebug();
    // The application's orderly termination, as for any quit.
    Q_INVOKABLE void quit();

signals:
    void launchAtLoginChanged();
    void showMenuIconChanged();

private:
    bool loginItemEnabled() const;

    UserDefaults& defaults_;
    LoginItem& loginItem_;
    bool launchAtLogin_ = false;
    QString launchAtLoginError_;
    bool shownMenuIcon_;
};

}  // namespace orvane
