// The menu-bar item: an icon and a menu. Real on a system tray, recorded in tests.
#pragma once

#include "app/StatusMenu.h"

#include <functional>
#include <memory>

namespace orvane {

class StatusItem {
public:
    virtual ~StatusItem() = default;  // removes the item from the bar
    // One of our icon names ("keyboard", "keyboard.fill"), drawn as a template/mask image.
    virtual void setIcon(const QString& iconName, const QString& accessibleDescription) = 0;
    // Replaces the menu's items.
    virtual void setMenu(const std::vector<StatusMenuItem>& items) = 0;
    // Called just before the menu opens, so it can be rebuilt.
    virtual void setMenuWillOpen(std::function<void()> handler) = 0;
};

class StatusBar {
public:
    virtual ~StatusBar() = default;
    virtual bool isAvailable() const = 0;
    virtual std::unique_ptr<StatusItem> createItem() = 0;
};

}  // namespace orvane
