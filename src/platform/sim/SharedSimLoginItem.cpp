// Where the build has no login-item backend, the process-wide login item is an in-memory one: the
// checkbox works for the session and nothing starts at login.
#include "platform/sim/SimLoginItem.h"

namespace orvane {
namespace {

std::unique_ptr<LoginItem>& installedLoginItem() {
    static std::unique_ptr<LoginItem> item;
    return item;
}

}  // namespace

LoginItem& LoginItem::shared() {
    if (const auto& installed = installedLoginItem()) return *installed;
    static SimLoginItem item;
    return item;
}

void LoginItem::installShared(std::unique_ptr<LoginItem> item) { installedLoginItem() = std::move(item); }

}  // namespace orvane
