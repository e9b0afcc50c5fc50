// The process-wide instance of a type: made on first use, or installed beforehand by tests and tools.
#pragma once

#include <functional>
#include <memory>

namespace orvane {

// Main thread only. get() creates the instance with `make` when none is installed.
template <typename T>
class SharedInstance {
public:
    static T& get(const std::function<std::unique_ptr<T>()>& make) {
        auto& instance = slot();
        if (!instance) instance = make();
        return *instance;
    }
    // Replaces the instance (null removes it; the next get() makes a new one).
    static void install(std::unique_ptr<T> instance) { slot() = std::move(instance); }

private:
    static std::unique_ptr<T>& slot() {
        static std::unique_ptr<T> instance;
        return instance;
    }
};

}  // namespace orvane
