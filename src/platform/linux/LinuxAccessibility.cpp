#include "platform/linux/LinuxAccessibility.h"

#include "platform/linux/KeyboardFinder.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace orvane {

bool LinuxAccessibility::isProcessTrusted(bool) { return outputCreated_() && KeyboardFinder::canReadEventDevices(); }

std::string LinuxAccessibility::instructionsPath() {
    const QString installed = QCoreApplication::applicationDirPath() + QStringLiteral("/../share/doc/orvane/linux-permissions.md");
    if (QFileInfo::exists(installed)) return QFileInfo(installed).canonicalFilePath().toStdString();
    return ORVANE_SOURCE_DIR "/docs/linux-permissions.md";
}

std::optional<Accessibility::Instructions> LinuxAccessibility::instructions() const {
    return Instructions{
        "Orvane needs to read your keyboards and to write to /dev/uinput to intercept and remap keyboard events.\n\n"
        "Add yourself to the input group (sudo usermod -aG input $USER), then log out, log in again and restart the app. "
        "The Orvane package makes sure that group exists, lets it use /dev/uinput and loads the uinput module; without "
        "the package, create the group if it is missing (sudo groupadd --system input), install "
        "packaging/linux/70-orvane-uinput.rules in /etc/udev/rules.d and load the module (sudo modprobe uinput).",
        "Open Instructions", "file://" + instructionsPath()};
}

}  // namespace orvane
