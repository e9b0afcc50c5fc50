#include "platform/linux/LinuxAccessibility.h"

#include "platform/linux/KeyboardFinder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace orvane {

bool LinuxAccessibility::isProcessTrusted(bool) { return outputCreated_() && KeyboardFinder::canReadEventDevices(); }

// Installed, the instructions are in share/doc beside bin; in a build, docs/ of the checkout that
// holds the build folder, wherever it is now.
std::string LinuxAccessibility::instructionsPath(const QString& applicationDir) {
    QDir dir(applicationDir);
    for (int level = 0; level < 6; ++level) {
        for (const char* candidate : {"share/doc/orvane/linux-permissions.md", "docs/linux-permissions.md"})
            if (QFileInfo(dir.filePath(QLatin1String(candidate))).isFile())
                return QFileInfo(dir.filePath(QLatin1String(candidate))).canonicalFilePath().toStdString();
        if (!dir.cdUp()) break;
    }
    return "docs/linux-permissions.md";
}

std::optional<Accessibility::Instructions> LinuxAccessibility::instructions() const {
    return Instructions{
        "Keyboard Access Required",
        "Orvane needs to read your keyboards and to write to /dev/uinput to intercept and remap keyboard events.\n\n"
        "Add yourself to the input group with the first two commands below (the first makes the group where it is "
        "missing), then log out, log in again and restart the app. The Orvane package lets that group use /dev/uinput "
        "and loads the uinput module; without the package, install packaging/linux/70-orvane-uinput.rules in "
        "/etc/udev/rules.d and load the module with the last command.",
        {"getent group input >/dev/null || sudo groupadd --system input", "sudo usermod -aG input $USER", "sudo modprobe uinput"},
        "Open Instructions", "file://" + instructionsPath(QCoreApplication::applicationDirPath())};
}

}  // namespace orvane
