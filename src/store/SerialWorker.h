// One background thread that runs queued jobs strictly in the order they were queued.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace orvane {

class SerialWorker {
public:
    SerialWorker();
    // Finishes the jobs already queued, then joins the thread.
    ~SerialWorker();

    SerialWorker(const SerialWorker&) = delete;
    SerialWorker& operator=(const SerialWorker&) = delete;

    void enqueue(std::function<void()> job);
    // Drops the jobs that have not started; a running one finishes.
    void discardPending();
    // Blocks until every job queued so far has finished.
    void waitUntilIdle();

private:
    void run();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable idle_;
    std::deque<std::function<void()>> jobs_;
    bool busy_ = false;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace orvane
