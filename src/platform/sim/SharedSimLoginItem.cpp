// Where the build has no login-item backend, the process-wide login item is an in-memory one: the
// checkbox works for the session and nothing starts at login.
#include "platform/SharedInstance.h"
#include "platform/sim/SimLoginItem.h"

namespace orvane {

LoginItem& LoginItem::shared() {
    return SharedInstance<LoginItem>::get([] { return std::make_unique<SimLoginItem>(); });
}

void LoginItem::installShared(std::unique_ptr<LoginItem> item) { SharedInstance<LoginItem>::install(std::move(item)); }

}  // namespace orvane
