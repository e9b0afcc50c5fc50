// Draws one of our monochrome SVG icons in a colour. Shared by the views and the status item.
#pragma once

#include <QColor>
#include <QImage>
#include <QSize>
#include <QString>

namespace orvane {

// An icon from the set (":/icons/<name>.svg"); a blank image for unknown names.
QImage renderIcon(const QString& name, QSize size, const QColor& color);

}  // namespace orvane
