#include "app/PanelIcon.h"

#include "app/StatusMenu.h"
#include "ui/common/IconRendering.h"

#include <QPixmap>

namespace orvane {

QIcon templateIcon(const QString& iconName, const QColor& color) {
    QIcon icon;
    for (int size : {16, 22, 32, 44, 64}) icon.addPixmap(QPixmap::fromImage(renderIcon(iconName, QSize(size, size), color)));
    icon.setIsMask(true);
    return icon;
}

QIcon panelIcon(const QString& iconName, const QPalette& palette, std::optional<int> panelLightness) {
    const QList<int> sizes = {16, 22, 32, 44, 64};
    // A panel that could be read is the surest guide: a theme's symbolic icon is drawn for the
    // theme's own panel, which an XEmbed tray on another panel need not be.
    if (!panelLightness && QIcon::hasThemeIcon(themedStatusIconName)) {
        const QIcon themed = QIcon::fromTheme(themedStatusIconName);
        if (iconName == statusIconName(true)) return themed;
        QIcon dimmed;
        for (int size : sizes) dimmed.addPixmap(themed.pixmap(QSize(size, size), QIcon::Disabled));
        return dimmed;
    }
    const bool darkPanel = panelLightness.value_or(palette.color(QPalette::Window).lightness()) < 128;
    return templateIcon(iconName, darkPanel ? QColor(0xE8, 0xE8, 0xE8) : QColor(0x30, 0x30, 0x30));
}

}  // namespace orvane
