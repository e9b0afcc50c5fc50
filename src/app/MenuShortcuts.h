// The status menu's key equivalents (Ctrl+, Ctrl+D Ctrl+Q) wherever they are typed: in the open menu and in our windows.
#pragma once

#include "app/StatusMenu.h"

#include <QObject>

namespace orvane {

// An event filter for a menu or a window. A key press that matches an item's shortcut triggers that
// item (queued: the item may rebuild the menu or close the window) and closes an open popup menu.
// Qt's own shortcut map cannot serve here: an action of a tray menu belongs to no window, and a
// QQuickView is no widget window, so neither place ever matches.
class MenuShortcuts : public QObject {
public:
    explicit MenuShortcuts(QObject* parent = nullptr) : QObject(parent) {}

    // The items whose shortcuts are acted on; the items of the latest menu built.
    void setItems(const std::vector<StatusMenuItem>& items);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::vector<std::pair<QKeySequence, std::function<void()>>> shortcuts_;
};

}  // namespace orvane
