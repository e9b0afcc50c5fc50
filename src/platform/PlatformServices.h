// Factories and hooks for the operating-system services whose implementation the build chooses.
#pragma once

#include "platform/InstanceChannel.h"

#include <QRect>

#include <functional>
#include <memory>
#include <optional>

namespace orvane {

// The channel between two launches of the application by the same user.
std::unique_ptr<InstanceChannel> createInstanceChannel();

// Calls onQuitRequest on the main thread when the system asks the process to end (a logout, a
// kill); a no-op where the platform delivers such requests as an ordinary application quit.
void installQuitRequestHandler(std::function<void()> onQuitRequest);

// Calls onReopen on the main thread when the user launches the application again while it runs (from
// the Finder or Spotlight); a no-op where a second launch is a new process (see InstanceChannel).
void installReopenHandler(std::function<void()> onReopen);

// Calls onReset on the main thread whenever the HID layer may have lost the user key mapping (after
// the machine wakes, when a keyboard is plugged in); a no-op where the HID tool keeps it itself.
void installHidResetHandler(std::function<void()> onReset);

// Whether an application holds secure keyboard entry now (a password field has the focus), during
// which event taps see no keys. Empty where the platform has no such state.
std::function<bool()> secureInputQuery();

// Brings this application in front of the others, whatever is active now.
void activateApplication();

// Whether a click on the system tray icon opens its menu by itself (a menu-bar item does); where it
// does not, the application opens the menu on a click.
bool trayIconClickOpensMenu();

// The lightness (0-255, as QColor::lightness) of the panel around a tray icon that sits at iconGeometry
// (screen coordinates), read from the screen just outside the icon; nothing where that cannot be read
// (no X11 screen, an icon not yet placed in its panel).
std::optional<int> trayPanelLightness(const QRect& iconGeometry);

// The process's resident memory in KiB, as the system counts it; nothing where it cannot be read.
std::optional<long long> residentMemoryKiB();

}  // namespace orvane
