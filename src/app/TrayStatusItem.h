// The status item on the desktop's system tray (QSystemTrayIcon with a QMenu).
#pragma once

#include "app/MenuShortcuts.h"
#include "app/StatusItem.h"

#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include <optional>

namespace orvane {

// The panel's lightness around the icon at a screen rectangle, where it can be read (trayPanelLightness()).
using PanelLightnessProbe = std::function<std::optional<int>(const QRect& iconGeometry)>;

class TrayStatusItem final : public StatusItem {
public:
    // clickOpensMenu: the platform opens the menu on a click itself (trayIconClickOpensMenu()).
    // probePanel: read once the icon has its place in the panel, and again when the palette or
    // theme changes; while it tells nothing, the icon is inked against the palette.
    explicit TrayStatusItem(bool clickOpensMenu, PanelLightnessProbe probePanel = {});
    ~TrayStatusItem() override;

    void setIcon(const QString& iconName, const QString& accessibleDescription) override;
    void setMenu(const std::vector<StatusMenuItem>& items) override;
    void setMenuWillOpen(std::function<void()> handler) override;
    QMenu& menu() { return menu_; }

private:
    void startProbing();
    void probePanel();
    void showIcon();

    QSystemTrayIcon tray_;
    QMenu menu_;
    MenuShortcuts shortcuts_;
    std::function<void()> menuWillOpen_;
    PanelLightnessProbe probe_;
    QTimer probeTimer_;
    int probesLeft_ = 0;
    QRect lastGeometry_;
    QRect probedGeometry_;
    std::optional<int> panelLightness_;
    std::unique_ptr<QObject> paletteWatch_;
    QString iconName_;
};

class TrayStatusBar final : public StatusBar {
public:
    TrayStatusBar(bool clickOpensMenu, PanelLightnessProbe probePanel)
        : clickOpensMenu_(clickOpensMenu), probePanel_(std::move(probePanel)) {}
    bool isAvailable() const override { return QSystemTrayIcon::isSystemTrayAvailable(); }
    std::unique_ptr<StatusItem> createItem() override { return std::make_unique<TrayStatusItem>(clickOpensMenu_, probePanel_); }

private:
    bool clickOpensMenu_;
    PanelLightnessProbe probePanel_;
};

// Our monochrome icon as a mask image (a platform that tints template images tints it).
QIcon templateIcon(const QString& iconName, const QColor& color);

// The icon name the desktop's icon theme gives the item where the theme has it.
inline const QString themedStatusIconName = QStringLiteral("input-keyboard-symbolic");

// The status icon for a panel. Where the panel's lightness is known, ours as a template image in dark or
// light ink against it. Otherwise, where the icon theme has themedStatusIconName, the theme's icon, which
// follows the desktop's light or dark look and which a StatusNotifier host recolours for its panel (while
// stopped, dimmed); else ours inked against the palette's window.
QIcon panelIcon(const QString& iconName, const QPalette& palette, std::optional<int> panelLightness = std::nullopt);

}  // namespace orvane
