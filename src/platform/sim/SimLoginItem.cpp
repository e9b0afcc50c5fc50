#include "platform/sim/SimLoginItem.h"

namespace orvane {

std::optional<QString> SimLoginItem::registerItem() {
    ++registerCalls_;
    if (failure_) return failure_;
    status_ = Status::enabled;
    return std::nullopt;
}

std::optional<QString> SimLoginItem::unregisterItem() {
    ++unregisterCalls_;
    if (failure_) return failure_;
    status_ = Status::notRegistered;
    return std::nullopt;
}

}  // namespace orvane
