// A few file descriptors held back so that the HID tool can still be started when the process has run out.
#pragma once

#include <mutex>
#include <vector>

namespace orvane {

// Starting a child takes several descriptors at once (its pipes, the start report, the process
// handle). Whatever exhausts the process's descriptors — a flood of connections, a leak — the clear
// that restores Caps Lock at quit must still run, so those few are held from the start and handed
// back to the system just for the start of a tool. Thread-safe.
class DescriptorReserve {
public:
    // The process-wide reserve for tool runs, filled when first asked for.
    static DescriptorReserve& forTools();

    explicit DescriptorReserve(int count);
    ~DescriptorReserve();
    DescriptorReserve(const DescriptorReserve&) = delete;
    DescriptorReserve& operator=(const DescriptorReserve&) = delete;

    // Closes the held descriptors, runs `start`, then holds as many again as can be had.
    template <typename Start>
    decltype(auto) whileReleased(Start&& start) {
        std::lock_guard lock(mutex_);
        release();
        struct Refill {
            DescriptorReserve* reserve;
            ~Refill() { reserve->fill(); }
        } refillAfterwards{this};
        return start();
    }

    // Holds again as many as can be had, up to the count (a start may have left fewer to take).
    void refill() {
        std::lock_guard lock(mutex_);
        fill();
    }

private:
    void release();
    void fill();

    const int count_;
    std::vector<int> descriptors_;
    std::mutex mutex_;
};

}  // namespace orvane
