#include "platform/TrayPanelWatch.h"

namespace orvane {
namespace {

constexpr int tickMs = 500;
constexpr int ticksPerWatch = 20;

}  // namespace

TrayPanelWatch::TrayPanelWatch(PanelLightnessProbe probe, std::function<QRect()> iconGeometry, std::function<void()> onChange)
    : probe_(std::move(probe)), iconGeometry_(std::move(iconGeometry)), onChange_(std::move(onChange)) {
    timer_.setInterval(tickMs);
    QObject::connect(&timer_, &QTimer::timeout, [this] { tick(); });
}

void TrayPanelWatch::start() {
    if (!probe_) return;
    probedGeometry_ = QRect();
    ticksLeft_ = ticksPerWatch;
    timer_.start();
}

void TrayPanelWatch::tick() {
    if (--ticksLeft_ <= 0) timer_.stop();
    const QRect geometry = iconGeometry_();
    const bool settled = geometry.isValid() && geometry == lastGeometry_;
    lastGeometry_ = geometry;
    if (!settled || geometry == probedGeometry_) return;
    probedGeometry_ = geometry;
    const std::optional<int> lightness = probe_(geometry);
    if (lightness == lightness_) return;
    lightness_ = lightness;
    onChange_();
}

}  // namespace orvane
