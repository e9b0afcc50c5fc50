#include "ui/common/IconImageProvider.h"

#include "ui/common/IconRendering.h"

namespace orvane::ui {

QImage IconImageProvider::requestImage(const QString& id, QSize* size, const QSize& requestedSize) {
    const QSize target = requestedSize.isValid() && !requestedSize.isEmpty() ? requestedSize : QSize(24, 24);
    if (size) *size = target;
    return renderIcon(id.section(QLatin1Char('/'), 0, 0), target, QColor(id.section(QLatin1Char('/'), 1)));
}

}  // namespace orvane::ui
