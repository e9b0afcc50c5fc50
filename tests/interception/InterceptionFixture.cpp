#include "InterceptionFixture.h"

#include "OutputText.h"

namespace orvane::testing {

std::vector<std::string> describe(const std::vector<PlatformEvent>& events) {
    std::vector<std::string> texts;
    for (const auto& event : events) texts.push_back(sim::describeEvent(event));
    return texts;
}

}  // namespace orvane::testing
