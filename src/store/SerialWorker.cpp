#include "store/SerialWorker.h"

namespace orvane {

SerialWorker::SerialWorker() : thread_([this] { run(); }) {}

SerialWorker::~SerialWorker() {
    {
        std::lock_guard lock(mutex_);
        stopping_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

void SerialWorker::enqueue(std::function<void()> job) {
    {
        std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    wake_.notify_one();
}

void SerialWorker::discardPending() {
    std::lock_guard lock(mutex_);
    jobs_.clear();
    if (!busy_) idle_.notify_all();
}

void SerialWorker::waitUntilIdle() {
    std::unique_lock lock(mutex_);
    idle_.wait(lock, [this] { return jobs_.empty() && !busy_; });
}

void SerialWorker::run() {
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return stopping_ || !jobs_.empty(); });
        if (jobs_.empty()) return;  // stopping, and nothing left to do
        auto job = std::move(jobs_.front());
        jobs_.pop_front();
        busy_ = true;
        lock.unlock();
        job();
        lock.lock();
        busy_ = false;
        if (jobs_.empty()) idle_.notify_all();
    }
}

}  // namespace orvane
