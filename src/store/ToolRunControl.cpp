#include "store/ToolRunControl.h"

#include <algorithm>
#include <csignal>

namespace orvane {

void ToolRunControl::cancel() {
    std::lock_guard lock(mutex_);
    cancelled_ = true;
    if (running_ > 0) ::kill(-running_, SIGKILL);
}

void ToolRunControl::setDeadline(Clock::time_point deadline) {
    std::lock_guard lock(mutex_);
    deadline_ = deadline;
}

std::optional<std::chrono::milliseconds> ToolRunControl::allowance(std::chrono::milliseconds timeout) const {
    std::lock_guard lock(mutex_);
    if (cancelled_) return std::nullopt;
    if (!deadline_) return timeout;
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(*deadline_ - Clock::now());
    if (left.count() <= 0) return std::nullopt;
    return std::min(timeout, left);
}

bool ToolRunControl::track(pid_t processGroup) {
    std::lock_guard lock(mutex_);
    if (cancelled_) {
        ::kill(-processGroup, SIGKILL);
        return false;
    }
    running_ = processGroup;
    return true;
}

void ToolRunControl::untrack() {
    std::lock_guard lock(mutex_);
    running_ = 0;
}

}  // namespace orvane
