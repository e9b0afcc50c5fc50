#include "app/TrayStatusItem.h"

#include <QEvent>
#include <QGuiApplication>
#include <QPainter>
#include <QPixmap>
#include "ui/common/IconRendering.h"

namespace orvane {

QIcon templateIcon(const QString& iconName, const QColor& color) {
    QIcon icon;
    for (int size : {16, 22, 32, 44, 64}) icon.addPixmap(QPixmap::fromImage(renderIcon(iconName, QSize(size, size), color)));
    icon.setIsMask(true);
    return icon;
}

QIcon panelIcon(const QString& iconName, const QPalette& palette, std::optional<int> panelLightness) {
    const QList<int> sizes = {16, 22, 32, 44, 64};
    if (QIcon::hasThemeIcon(themedStatusIconName)) {
        const QIcon themed = QIcon::fromTheme(themedStatusIconName);
        if (iconName == statusIconName(true)) return themed;
        QIcon dimmed;
        for (int size : sizes) dimmed.addPixmap(themed.pixmap(QSize(size, size), QIcon::Disabled));
        return dimmed;
    }
    const bool darkPanel = panelLightness.value_or(palette.color(QPalette::Window).lightness()) < 128;
    return templateIcon(iconName, darkPanel ? QColor(0xE8, 0xE8, 0xE8) : QColor(0x30, 0x30, 0x30));
}

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

// Calls onChange when the application's palette or the desktop's theme changes.
class PaletteWatch final : public QObject {
public:
    explicit PaletteWatch(std::function<void()> onChange) : onChange_(std::move(onChange)) { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ThemeChange) onChange_();
        return false;
    }

private:
    std::function<void()> onChange_;
};

}  // namespace

TrayStatusItem::TrayStatusItem(bool clickOpensMenu, PanelLightnessProbe probePanel) : probe_(std::move(probePanel)) {
    probeTimer_.setInterval(500);
    QObject::connect(&probeTimer_, &QTimer::timeout, [this] { this->probePanel(); });
    // A theme change reaches every window: the timer restarting folds them into one probe.
    paletteWatch_ = std::make_unique<PaletteWatch>([this] {
        showIcon();
        startProbing();
    });
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
    startProbing();
}

void TrayStatusItem::showIcon() {
    if (!iconName_.isEmpty()) tray_.setIcon(panelIcon(iconName_, QGuiApplication::palette(), panelLightness_));
}

void TrayStatusItem::startProbing() {
    if (!probe_ || !tray_.isVisible()) return;
    probedGeometry_ = QRect();
    probesLeft_ = 20;
    probeTimer_.start();
}

// The tray places the icon some time after it is shown (before that, its geometry is wherever the
// unembedded window sits): read the panel once the geometry has held for one tick, so the panel has
// drawn around the icon, and again if it moves during the next ten seconds.
void TrayStatusItem::probePanel() {
    if (--probesLeft_ <= 0) probeTimer_.stop();
    const QRect geometry = tray_.geometry();
    const bool settled = geometry.isValid() && geometry == lastGeometry_;
    lastGeometry_ = geometry;
    if (!settled || geometry == probedGeometry_) return;
    probedGeometry_ = geometry;
    const std::optional<int> lightness = probe_(geometry);
    if (lightness == panelLightness_) return;
    panelLightness_ = lightness;
    showIcon();
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
