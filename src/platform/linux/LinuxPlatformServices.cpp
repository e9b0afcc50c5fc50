// The Linux choices: a per-user local socket between launches (quit requests: posix/).
#include "platform/PlatformServices.h"
#include "platform/linux/LocalSocketInstanceChannel.h"

namespace orvane {

std::unique_ptr<InstanceChannel> createInstanceChannel() {
    return std::make_unique<LocalSocketInstanceChannel>(LocalSocketInstanceChannel::defaultName());
}

}  // namespace orvane
