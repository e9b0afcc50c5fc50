// Whether the application starts when the user logs in: the system's record, and changing it.
#pragma once

#include <QString>

#include <memory>
#include <optional>

namespace orvane {

// Main thread only; every call is synchronous. The system's record is the only truth: nothing is cached.
class LoginItem {
public:
    // The states of a login-item record, as the platforms with an approval step know them.
    enum class Status { notRegistered, enabled, requiresApproval, notFound };

    virtual ~LoginItem() = default;

    // Only `enabled` means the application starts at login.
    virtual Status status() = 0;
    // Makes the application a login item. On failure, the error's description; nothing else changes.
    virtual std::optional<QString> registerItem() = 0;
    // Removes the login item (succeeds when there is none). On failure, the error's description.
    virtual std::optional<QString> unregisterItem() = 0;

    // The process-wide login item: the build's backend (the XDG autostart entry on Linux) unless
    // one was installed. Tests install a simulated one; installing null returns to the backend.
    static LoginItem& shared();
    static void installShared(std::unique_ptr<LoginItem> item);
};

}  // namespace orvane
