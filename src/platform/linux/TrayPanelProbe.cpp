// The panel's lightness around a tray icon, read from the X11 screen. On Wayland no client may read
// the screen, and offscreen there is no panel: both answer nothing.
#include "platform/PlatformServices.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include <algorithm>
#include <vector>

namespace orvane {

std::optional<int> trayPanelLightness(const QRect& iconGeometry) {
    if (QGuiApplication::platformName() != QLatin1String("xcb") || !iconGeometry.isValid()) return std::nullopt;
    QScreen* screen = QGuiApplication::screenAt(iconGeometry.center());
    if (!screen) return std::nullopt;
    // A ring two pixels wide just outside the icon: the panel (or its tray area) behind the icon.
    constexpr int ring = 2;
    const QRect around = iconGeometry.adjusted(-ring, -ring, ring, ring).intersected(screen->geometry());
    const QImage shot = screen->grabWindow(0, around.x() - screen->geometry().x(), around.y() - screen->geometry().y(),
                                           around.width(), around.height()).toImage();
    if (shot.size() != around.size()) return std::nullopt;
    std::vector<int> lightness;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x)
            if (!iconGeometry.contains(around.topLeft() + QPoint(x, y))) lightness.push_back(shot.pixelColor(x, y).lightness());
    if (lightness.empty()) return std::nullopt;
    // The median: a neighbouring icon or a separator drawn into the ring does not tip it.
    std::nth_element(lightness.begin(), lightness.begin() + lightness.size() / 2, lightness.end());
    return lightness[lightness.size() / 2];
}

}  // namespace orvane
