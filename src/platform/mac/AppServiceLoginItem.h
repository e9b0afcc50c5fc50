// Launch at login on macOS 13 and later: the application's own login item, SMAppService.mainAppService.
#pragma once

#include "platform/LoginItem.h"

namespace orvane {

// The system lists it under General → Login Items; the user may have to approve it there
// (requiresApproval). Errors are the system's localized descriptions.
class AppServiceLoginItem final : public LoginItem {
public:
    Status status() override;
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;
};

}  // namespace orvane
