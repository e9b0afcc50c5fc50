// A login item kept in memory, which can be told to refuse changes, for tests and the simulator.
#pragma once

#include "platform/LoginItem.h"

namespace orvane {

class SimLoginItem final : public LoginItem {
public:
    Status status() override { return status_; }
    std::optional<QString> registerItem() override;
    std::optional<QString> unregisterItem() override;

    // What the system reports, e.g. a login item registered outside the application.
    void setStatus(Status status) { status_ = status; }
    // While set, register and unregister fail with this description and change nothing.
    void setFailure(std::optional<QString> description) { failure_ = std::move(description); }
    int registerCalls() const { return registerCalls_; }
    int unregisterCalls() const { return unregisterCalls_; }

private:
    Status status_ = Status::notRegistered;
    std::optional<QString> failure_;
    int registerCalls_ = 0;
    int unregisterCalls_ = 0;
};

}  // namespace orvane
