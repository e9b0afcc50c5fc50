// Factories for the operating-system services whose implementation the build chooses.
#pragma once

#include "platform/InstanceChannel.h"

#include <functional>
#include <memory>

namespace orvane {

// The channel between two launches of the application by the same user.
std::unique_ptr<InstanceChannel> createInstanceChannel();

// Calls onQuitRequest on the main thread when the system asks the process to end (a logout, a
// kill); a no-op where the platform delivers such requests as an ordinary application quit.
void installQuitRequestHandler(std::function<void()> onQuitRequest);

}  // namespace orvane
