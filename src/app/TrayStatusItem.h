// The status item on the desktop's system tray (QSystemTrayIcon with a QMenu).
#pragma once

#include "app/MenuShortcuts.h"
#include "app/StatusItem.h"

#include <QMenu>
#include <QSystemTrayIcon>

namespace orvane {

class TrayStatusItem final : public StatusItem {
public:
    // clickOpensMenu: the platform opens the menu on a click itself (trayIconClickOpensMenu()).
    explicit TrayStatusItem(bool clickOpensMenu);
    ~TrayStatusItem() override;

    void setIcon(const QString& iconName, const QString& accessibleDescription) override;
    void setMenu(const std::vector<StatusMenuItem>& items) override;
    void setMenuWillOpen(std::function<void()> handler) override;
    QMenu& menu() { return menu_; }

private:
    QSystemTrayIcon tray_;
    QMenu menu_;
    MenuShortcuts shortcuts_;
    std::function<void()> menuWillOpen_;
};

class TrayStatusBar final : public StatusBar {
public:
    explicit TrayStatusBar(bool clickOpensMenu) : clickOpensMenu_(clickOpensMenu) {}
    bool isAvailable() const override { return QSystemTrayIcon::isSystemTrayAvailable(); }
    std::unique_ptr<StatusItem> createItem() override { return std::make_unique<TrayStatusItem>(clickOpensMenu_); }

private:
    bool clickOpensMenu_;
};

// Our monochrome icon as a mask image (a platform that tints template images tints it).
QIcon templateIcon(const QString& iconName, const QColor& color);

// The icon name the desktop's icon theme gives the item where the theme has it.
inline const QString themedStatusIconName = QStringLiteral("input-keyboard-symbolic");

// The status icon for a panel. Where the icon theme has themedStatusIconName, the theme's icon, which
// follows the desktop's light or dark look and which a StatusNotifier host recolours for its panel (while
// stopped, dimmed); otherwise ours, as a template image in dark or light ink against the palette's window.
QIcon panelIcon(const QString& iconName, const QPalette& palette);

}  // namespace orvane
