#include "platform/linux/KeyboardPlan.h"

#include <linux/input-event-codes.h>

namespace orvane {

KeyboardStep planKeyboard(const std::string& device, std::uint16_t current, const ChangedKeyboard* known,
                          std::optional<std::uint16_t> target) {
    const bool ours = known != nullptr && (current == known->applied || current == known->replacing);
    if (!ours && current != KEY_CAPSLOCK) return {};
    const std::uint16_t original = ours ? known->original : std::uint16_t{KEY_CAPSLOCK};
    const std::uint16_t wanted = target.value_or(original);
    KeyboardStep step;
    if (wanted != current) step.set = wanted;
    if (target) step.keep = ChangedKeyboard{device, original, *target};
    return step;
}

}  // namespace orvane
