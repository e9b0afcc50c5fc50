// On Linux the process-wide login item is the XDG autostart entry of the running executable: the
// mechanism every desktop session (GNOME, KDE, Xfce and the others) honours at login.
#include "platform/SharedInstance.h"
#include "platform/linux/XdgAutostartLoginItem.h"

namespace orvane {

LoginItem& LoginItem::shared() {
    return SharedInstance<LoginItem>::get([] { return std::make_unique<XdgAutostartLoginItem>(); });
}

void LoginItem::installShared(std::unique_ptr<LoginItem> item) { SharedInstance<LoginItem>::install(std::move(item)); }

}  // namespace orvane
