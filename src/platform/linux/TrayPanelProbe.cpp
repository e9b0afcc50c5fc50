// The panel's lightness around a tray icon, read from the X11 screen. On Wayland no client may read
// the screen, and offscreen there is no panel: both answer nothing.
#include "platform/PlatformServices.h"

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <vector>

namespace orvane {
namespace {

// The top-level window under a screen point, in the screen's logical pixels: for a point on a tray
// icon, the panel that holds the tray (or the frame a window manager put around it). Nothing where
// the X server cannot be asked.
std::optional<QRect> topLevelWindowAt(const QScreen& screen, QPoint point) {
    auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* connection = x11 ? x11->connection() : nullptr;
    if (!connection) return std::nullopt;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const qreal scale = screen.devicePixelRatio();
    const auto free = [](void* reply) { std::free(reply); };
    const std::unique_ptr<xcb_translate_coordinates_reply_t, decltype(free)> under(
        xcb_translate_coordinates_reply(connection,
                                        xcb_translate_coordinates(connection, root, root, static_cast<int16_t>(point.x() * scale),
                                                                  static_cast<int16_t>(point.y() * scale)),
                                        nullptr),
        free);
    if (!under || under->child == XCB_WINDOW_NONE) return std::nullopt;
    const std::unique_ptr<xcb_get_geometry_reply_t, decltype(free)> geometry(
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, under->child), nullptr), free);
    if (!geometry) return std::nullopt;
    return QRectF(geometry->x / scale, geometry->y / scale, geometry->width / scale, geometry->height / scale).toAlignedRect();
}

}  // namespace

std::optional<int> trayPanelLightness(const QRect& iconGeometry) {
    if (QGuiApplication::platformName() != QLatin1String("xcb") || !iconGeometry.isValid()) return std::nullopt;
    QScreen* screen = QGuiApplication::screenAt(iconGeometry.center());
    if (!screen) return std::nullopt;
    // A ring two pixels wide just outside the icon: the panel (or its tray area) behind the icon. Where
    // the panel is no taller than the icon, part of the ring lies beyond it: only the part inside counts.
    constexpr int ring = 2;
    const QRect around = iconGeometry.adjusted(-ring, -ring, ring, ring).intersected(screen->geometry());
    const QRect panel = topLevelWindowAt(*screen, iconGeometry.center()).value_or(around);
    const QImage shot = screen->grabWindow(0, around.x() - screen->geometry().x(), around.y() - screen->geometry().y(),
                                           around.width(), around.height()).toImage();
    if (shot.size() != around.size()) return std::nullopt;
    std::vector<int> lightness;
    for (int y = 0; y < shot.height(); ++y)
        for (int x = 0; x < shot.width(); ++x) {
            const QPoint point = around.topLeft() + QPoint(x, y);
            if (panel.contains(point) && !iconGeometry.contains(point)) lightness.push_back(shot.pixelColor(x, y).lightness());
        }
    if (lightness.empty()) return std::nullopt;
    // The median: a neighbouring icon or a separator drawn into the ring does not tip it.
    std::nth_element(lightness.begin(), lightness.begin() + lightness.size() / 2, lightness.end());
    return lightness[lightness.size() / 2];
}

}  // namespace orvane
