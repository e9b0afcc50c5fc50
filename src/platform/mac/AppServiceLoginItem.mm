#include "platform/mac/AppServiceLoginItem.h"

#import <ServiceManagement/ServiceManagement.h>

namespace orvane {
namespace {

std::optional<QString> failure(BOOL succeeded, NSError* error) {
    if (succeeded) return std::nullopt;
    return QString::fromNSString(error.localizedDescription);
}

}  // namespace

LoginItem::Status AppServiceLoginItem::status() {
    switch (SMAppService.mainAppService.status) {
    case SMAppServiceStatusNotRegistered: return Status::notRegistered;
    case SMAppServiceStatusEnabled: return Status::enabled;
    case SMAppServiceStatusRequiresApproval: return Status::requiresApproval;
    case SMAppServiceStatusNotFound: return Status::notFound;
    }
    return Status::notFound;
}

std::optional<QString> AppServiceLoginItem::registerItem() {
    NSError* error = nil;
    const BOOL registered = [SMAppService.mainAppService registerAndReturnError:&error];
    return failure(registered, error);
}

// With no item the system reports an error; LoginItem's contract calls that a success.
std::optional<QString> AppServiceLoginItem::unregisterItem() {
    const SMAppServiceStatus current = SMAppService.mainAppService.status;
    if (current == SMAppServiceStatusNotRegistered || current == SMAppServiceStatusNotFound) return std::nullopt;
    NSError* error = nil;
    const BOOL unregistered = [SMAppService.mainAppService unregisterAndReturnError:&error];
    return failure(unregistered, error);
}

}  // namespace orvane
