// The status item on the desktop's system tray (QSystemTrayIcon with a QMenu).
#pragma once

#include "app/MenuShortcuts.h"
#include "app/PaletteWatch.h"
#include "app/StatusItem.h"
#include "app/TrayWindowWatch.h"
#include "platform/TrayPanelWatch.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace orvane {

class TrayStatusItem final : public StatusItem {
public:
    // clickOpensMenu: the platform opens the menu on a click itself (trayIconClickOpensMenu()).
    // probePanel: read once the icon has its place in the panel, and again when the palette or
    // theme changes or the icon's window is embedded again, moved or resized (TrayWindowWatch);
    // while it tells nothing, the icon is inked against the palette (panelIcon()).
    explicit TrayStatusItem(bool clickOpensMenu, PanelLightnessProbe probePanel = {});
    ~TrayStatusItem() override;

    void setIcon(const QString& iconName, const QString& accessibleDescription) override;
    void setMenu(const std::vector<StatusMenuItem>& items) override;
    void setMenuWillOpen(std::function<void()> handler) override;
    QMenu& menu() { return menu_; }

private:
    void watchPanel();
    void showIcon();

    QSystemTrayIcon tray_;
    QMenu menu_;
    MenuShortcuts shortcuts_;
    std::function<void()> menuWillOpen_;
    TrayPanelWatch panelWatch_;
    PaletteWatch paletteWatch_;
    TrayWindowWatch windowWatch_;
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

}  // namespace orvane
