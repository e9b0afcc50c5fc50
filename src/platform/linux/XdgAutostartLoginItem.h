// The login item as an XDG autostart entry: a desktop file in the user's autostart directory.
#pragma once

#include "platform/LoginItem.h"

#include <QString>

namespace orvane {

// The entry is `<config>/autostart/com.user.Orvane.desktop` (`com.user.Orvane-<name>.desktop` for a
// private instance), where <config> is $XDG_CONFIG_HOME when it is set to an absolute path and
// ~/.config otherwise (read at each call, as session managers do).
// It launches the running executable. An entry that exists counts as enabled unless it is marked
// Hidden=true or X-GNOME-Autostart-enabled=false (how desktops switch an entry off without deleting it);
// registering writes a fresh entry over such an entry and leaves an enabled one untouched, so that
// registering again (as the settings panel does when it finds the item enabled) never rewrites it.
class XdgAutostartLoginItem final : public LoginItem {
public:
    // Over the running executable (QCoreApplication::applicationFilePath(), read at registration).
    XdgAutostartLoginItem() = default;
    // Over a given executable, for tests.
    explicit XdgAutostartLoginItem(QString executablePath) : executablePath_(std::move(executablePath)) {}

    Status status() override;
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;

    // The entry's full path under the current environment.
    static QString entryPath();
    // The desktop entry launching that executable (as this private instance, when it is one).
    static QByteArray entryContents(const QString& executablePath);
    // The executable as the Exec key's program: quoted when needed, with the escapes the Desktop
    // Entry format asks for (inside quotes, and then those of a string value).
    static QString execProgram(const QString& executablePath);

private:
    QString executablePath() const;

    QString executablePath_;
};

}  // namespace orvane
