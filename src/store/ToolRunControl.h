// Ends or bounds the HID tool's runs from another thread: quitting must not wait on a hung tool twice.
#pragma once

#include <chrono>
#include <mutex>
#include <optional>

#include <sys/types.h>

namespace orvane {

// Shared by the thread that runs the tool and the one that quits; every member is thread-safe.
class ToolRunControl {
public:
    using Clock = std::chrono::steady_clock;

    // Kills the running tool's process group and keeps every later run from starting.
    void cancel();
    // Later runs end by this time at the latest; a run that would start after it does not start.
    void setDeadline(Clock::time_point deadline);

    // How long a run starting now may take, at most `timeout`; nothing when it must not start.
    std::optional<std::chrono::milliseconds> allowance(std::chrono::milliseconds timeout) const;
    // Registers the started tool's process group; false when cancelled meanwhile (it is then killed).
    bool track(pid_t processGroup);
    void untrack();

private:
    mutable std::mutex mutex_;
    bool cancelled_ = false;
    std::optional<Clock::time_point> deadline_;
    pid_t running_ = 0;
};

}  // namespace orvane
