#include "app/MenuShortcuts.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QWidget>

namespace orvane {

void MenuShortcuts::setItems(const std::vector<StatusMenuItem>& items) {
    shortcuts_.clear();
    for (const StatusMenuItem& item : items)
        if (!item.shortcut.isEmpty() && item.trigger && item.isEnabled) shortcuts_.emplace_back(item.shortcut, item.trigger);
}

bool MenuShortcuts::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) return QObject::eventFilter(watched, event);
    const auto* key = static_cast<QKeyEvent*>(event);
    const QKeySequence typed(key->keyCombination());
    for (const auto& [shortcut, trigger] : shortcuts_) {
        if (shortcut != typed) continue;
        if (QWidget* popup = QApplication::activePopupWidget()) popup->close();
        QTimer::singleShot(0, this, trigger);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace orvane
