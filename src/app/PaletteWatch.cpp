#include "app/PaletteWatch.h"

#include <QCoreApplication>
#include <QEvent>

namespace orvane {

PaletteWatch::PaletteWatch(std::function<void()> onChange) : onChange_(std::move(onChange)) { qApp->installEventFilter(this); }

bool PaletteWatch::eventFilter(QObject*, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ThemeChange) onChange_();
    return false;
}

}  // namespace orvane
