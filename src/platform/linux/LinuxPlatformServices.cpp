// The Linux choices: a per-user local socket between launches; no reopen, secure input or HID resets
// (orvane-hidutil gives keyboards plugged in later the mapping in force); resident memory from /proc.
#include "platform/DesktopWords.h"
#include "platform/PlatformServices.h"
#include "platform/linux/LocalSocketInstanceChannel.h"

#include <fstream>
#include <string>

namespace orvane {

std::unique_ptr<InstanceChannel> createInstanceChannel() {
    return std::make_unique<LocalSocketInstanceChannel>(LocalSocketInstanceChannel::defaultName());
}

void installReopenHandler(std::function<void()>) {}

void installHidResetHandler(std::function<void()>) {}

std::function<bool()> secureInputQuery() { return {}; }

// Desktops raise a window that asks for activation; there is no application to activate.
void activateApplication() {}

bool trayIconClickOpensMenu() { return false; }

const DesktopWords& DesktopWords::shared() {
    static const DesktopWords words = linuxDesktop();
    return words;
}

std::optional<long long> residentMemoryKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("VmRSS:")) return std::stoll(line.substr(6));
    return std::nullopt;
}

}  // namespace orvane
