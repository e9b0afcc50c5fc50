// Follows the panel's lightness around a tray icon while the tray places and moves the icon.
#pragma once

#include <QRect>
#include <QTimer>

#include <functional>
#include <optional>

namespace orvane {

// The panel's lightness around the icon at a screen rectangle, where it can be read (trayPanelLightness()).
using PanelLightnessProbe = std::function<std::optional<int>(const QRect& iconGeometry)>;

// A tray places its icon some time after it is shown; before that, the icon's geometry is wherever
// the unembedded window sits (an XEmbed tray on X11). The panel is read once the geometry has held for
// one tick, so the panel has drawn around the icon, and again if it moves during the next ten seconds.
// Main thread only.
class TrayPanelWatch {
public:
    // iconGeometry: where the icon is now, in screen coordinates. onChange: called when a reading
    // differs from the one before (the first reading differs from nothing unless it tells nothing).
    TrayPanelWatch(PanelLightnessProbe probe, std::function<QRect()> iconGeometry, std::function<void()> onChange);

    // Watches for the next ten seconds, reading the panel again even where the icon has not moved.
    // Nothing happens without a probe. Calls in quick succession fold into one reading.
    void start();
    // The last reading; nothing until the panel could be read.
    std::optional<int> lightness() const { return lightness_; }

private:
    void tick();

    PanelLightnessProbe probe_;
    std::function<QRect()> iconGeometry_;
    std::function<void()> onChange_;
    QTimer timer_;
    int ticksLeft_ = 0;
    QRect lastGeometry_;
    QRect probedGeometry_;
    std::optional<int> lightness_;
};

}  // namespace orvane
