// Serves our monochrome SVG icons to QML tinted in any colour: image://icon/<name>/<color>.
#pragma once

#include <QQuickImageProvider>

namespace orvane::ui {

class IconImageProvider : public QQuickImageProvider {
public:
    IconImageProvider() : QQuickImageProvider(QQuickImageProvider::Image) {}
    // id is "<name>/<color>", e.g. "trash/#ff3b30"; unknown names give an empty image.
    QImage requestImage(const QString& id, QSize* size, const QSize& requestedSize) override;
};

}  // namespace orvane::ui
