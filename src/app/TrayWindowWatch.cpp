#include "app/TrayWindowWatch.h"

#include <QCoreApplication>
#include <QEvent>

namespace orvane {

TrayWindowWatch::TrayWindowWatch(std::function<void()> onChange) : onChange_(std::move(onChange)) {
    // The window is made when the icon is first shown, inside Qt: the application's filter sees it from the start.
    qApp->installEventFilter(this);
}

bool TrayWindowWatch::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::Show:
    case QEvent::Move:
    case QEvent::Resize:
        // The name Qt gives the widget that holds an XEmbed tray icon.
        if (watched->isWidgetType() && watched->objectName() == QLatin1String("QSystemTrayIconSys")) onChange_();
        break;
    default:
        break;
    }
    return false;
}

}  // namespace orvane
