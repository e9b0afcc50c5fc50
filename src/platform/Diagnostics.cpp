#include "platform/Diagnostics.h"

#include <cstdio>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

namespace orvane::diagnostics {
namespace {

std::mutex mutex;
bool holding = false;
std::thread::id holder;
std::vector<std::string> held;
std::vector<std::string>* redirected = nullptr;

void write(std::string_view text) {
    if (redirected) {
        redirected->emplace_back(text);
        return;
    }
    std::string line(text);
    line.push_back('\n');
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

}  // namespace

void printLine(std::string_view text) {
    std::lock_guard lock(mutex);
    if (holding && std::this_thread::get_id() != holder) {
        held.emplace_back(text);
        return;
    }
    write(text);
}

void holdBackgroundLines(bool hold) {
    std::lock_guard lock(mutex);
    holding = hold;
    holder = std::this_thread::get_id();
}

void releaseHeld() {
    std::lock_guard lock(mutex);
    for (const auto& line : held) write(line);
    held.clear();
}

}  // namespace orvane::diagnostics

namespace orvane::diagnostics {

void redirectTo(std::vector<std::string>* lines) {
    std::lock_guard lock(mutex);
    redirected = lines;
}

}  // namespace orvane::diagnostics
