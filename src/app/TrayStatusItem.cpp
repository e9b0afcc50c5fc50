#include "app/TrayStatusItem.h"

#include "app/PanelIcon.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>

namespace orvane {
namespace {

// The state's dot: "●" a filled disc, "○" a ring, so the states differ by more than colour.
QIcon dotIcon(const QString& dot, const QColor& color) {
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool filled = dot == QStringLiteral("\u25CF");
    painter.setPen(filled ? QPen(Qt::NoPen) : QPen(color, 1.5));
    painter.setBrush(filled ? QBrush(color) : QBrush(Qt::NoBrush));
    painter.drawEllipse(QRectF(3.5, 3.5, 9, 9));
    return QIcon(pixmap);
}

}  // namespace

TrayStatusItem::TrayStatusItem(bool clickOpensMenu, PanelLightnessProbe probePanel)
    : panelWatch_(std::move(probePanel), [this] { return tray_.geometry(); }, [this] { showIcon(); }),
      // The theme may have changed the panel too; the watch folds a burst of changes into one reading.
      paletteWatch_([this] {
          showIcon();
          watchPanel();
      }),
      // A restarted panel re-embeds the icon, perhaps in another colour; a moved icon has new surroundings.
      windowWatch_([this] { watchPanel(); }) {
    tray_.setContextMenu(&menu_);
    menu_.installEventFilter(&shortcuts_);
    // Rebuild the items in place just before showing; the menu object itself never changes.
    QObject::connect(&menu_, &QMenu::aboutToShow, [this] {
        if (menuWillOpen_) menuWillOpen_();
    });
    if (clickOpensMenu) return;
    // A left click opens the same menu, as a menu-bar item does.
    QObject::connect(&tray_, &QSystemTrayIcon::activated, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) menu_.popup(tray_.geometry().isValid() ? tray_.geometry().bottomLeft() : QCursor::pos());
    });
}

TrayStatusItem::~TrayStatusItem() { tray_.hide(); }

void TrayStatusItem::setIcon(const QString& iconName, const QString& accessibleDescription) {
    iconName_ = iconName;
    showIcon();
    tray_.setToolTip(accessibleDescription);
    if (tray_.isVisible()) return;
    tray_.show();  // shown once it has an icon to show
    watchPanel();
}

void TrayStatusItem::showIcon() {
    if (!iconName_.isEmpty()) tray_.setIcon(panelIcon(iconName_, QGuiApplication::palette(), panelWatch_.lightness()));
}

void TrayStatusItem::watchPanel() {
    if (tray_.isVisible()) panelWatch_.start();
}

void TrayStatusItem::setMenu(const std::vector<StatusMenuItem>& items) {
    menu_.clear();
    shortcuts_.setItems(items);
    const QColor iconColor = menu_.palette().color(QPalette::WindowText);
    for (const StatusMenuItem& item : items) {
        if (item.kind == StatusMenuItem::Kind::separator) {
            menu_.addSeparator();
            continue;
        }
        QAction* action = menu_.addAction(item.title);
        // A menu item cannot mix colours in its title: the coloured dot becomes the item's icon.
        if (!item.dot.isEmpty()) action->setIcon(dotIcon(item.dot, item.dotColor));
        if (!item.iconName.isEmpty()) action->setIcon(templateIcon(item.iconName, iconColor));
        if (!item.iconDescription.isEmpty()) action->setToolTip(item.iconDescription);
        action->setShortcut(item.shortcut);
        action->setEnabled(item.isEnabled);
        // Every item stays in this menu: no role moves "Quit" or "Settings..." to an application menu.
        action->setMenuRole(QAction::NoRole);
        action->setIconVisibleInMenu(true);
        // Queued, with the menu as context: the handler may refill this very menu, deleting the action.
        if (item.trigger) QObject::connect(action, &QAction::triggered, &menu_, item.trigger, Qt::QueuedConnection);
    }
}

void TrayStatusItem::setMenuWillOpen(std::function<void()> handler) { menuWillOpen_ = std::move(handler); }

}  // namespace orvane
