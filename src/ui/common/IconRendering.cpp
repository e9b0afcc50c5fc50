#include "ui/common/IconRendering.h"

#include <QPainter>
#include <QSvgRenderer>

namespace orvane {

QImage renderIcon(const QString& name, QSize size, const QColor& color) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/icons/%1.svg").arg(name));
    if (!renderer.isValid()) return image;
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter);
    // The drawings are black shapes: keep their alpha, take the colour asked for.
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color.isValid() ? color : QColor(Qt::black));
    return image;
}

}  // namespace orvane
