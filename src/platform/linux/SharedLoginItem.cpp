// On Linux the process-wide login item is the XDG autostart entry of the running executable: the
// mechanism every desktop session (GNOME, KDE, Xfce and the others) honours at login.
#include "platform/linux/XdgAutostartLoginItem.h"

namespace orvane {
namespace {

std::unique_ptr<LoginItem>& installedLoginItem() {
    static std::unique_ptr<LoginItem> item;
    return item;
}

}  // namespace

LoginItem& LoginItem::shared() {
    if (const auto& installed = installedLoginItem()) return *installed;
    static XdgAutostartLoginItem item;
    return item;
}

void LoginItem::installShared(std::unique_ptr<LoginItem> item) { installedLoginItem() = std::move(item); }

}  // namespace orvane
