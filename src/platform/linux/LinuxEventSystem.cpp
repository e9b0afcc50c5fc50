#include "platform/linux/LinuxEventSystem.h"

#include <algorithm>
#include <chrono>

namespace orvane {

LinuxEventSystem::LinuxEventSystem(KeyboardInput& input, KeyboardOutput& output, std::function<bool()> trusted)
    : input_(&input), output_(output), trusted_(std::move(trusted)) {
    held_.reserve(32);
    ChainEventSystem::setOutput([this](const PlatformEvent& event) { deliver(event); });
    output.onCapsLockLight = [this](bool on) {
        translator_.setCapsLock(on);
        if (input_) input_->setCapsLockLight(on);
    };
    input.setListener(this);
}

LinuxEventSystem::~LinuxEventSystem() { detachDevices(); }

void LinuxEventSystem::detachDevices() {
    if (!input_) return;
    output_.releaseAll();
    output_.detach();
    input_->setListener(nullptr);
    input_->setGrabbed(false);
    input_ = nullptr;
}

void LinuxEventSystem::tapsChanged() {
    const bool intercepting = liveTapCount(/*activeOnly=*/true) > 0;
    if (intercepting == intercepting_) return;
    intercepting_ = intercepting;
    // Whatever a stopped interception pressed is released before keyboards go back to applications.
    if (!intercepting) output_.releaseAll();
    if (input_) input_->setGrabbed(intercepting);
}

void LinuxEventSystem::keyEvent(KeyboardId keyboard, std::uint16_t code, int value) {
    handleKey(keyboard, code, value, input_ && input_->isGrabbed(keyboard));
}

void LinuxEventSystem::handleKey(KeyboardId keyboard, std::uint16_t code, int value, bool grabbed) {
    const auto holds = [&](const Held& held) { return held.code == code && held.keyboard == keyboard; };
    const auto holdsCode = [&](const Held& held) { return held.code == code; };
    if (value == 0) {
        const auto found = std::find_if(held_.begin(), held_.end(), holds);
        if (found == held_.end()) return;
        held_.erase(found);
        if (std::any_of(held_.begin(), held_.end(), holdsCode)) return;  // another keyboard still holds it
    } else if (value == 1) {
        const bool alreadyHeld = std::any_of(held_.begin(), held_.end(), holdsCode);
        if (std::none_of(held_.begin(), held_.end(), holds)) held_.push_back({code, keyboard});
        if (alreadyHeld) value = 2;
    }
    const KeyboardTranslator::Result result = translator_.translate(code, value);  // keeps the modifier state
    // While interception waits to grab this keyboard, its keys reach applications directly.
    if (intercepting_ && !grabbed) return;
    switch (result.outcome) {
    case KeyboardTranslator::Outcome::event: {
        // Read as it arrives, so the time it is read is its time (a steady clock, as Quartz's stamps).
        PlatformEvent event = result.event;
        event.timestamp = static_cast<std::uint64_t>(
            std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch()).count());
        enterFromKeyboard(event);
        break;
    }
    case KeyboardTranslator::Outcome::passThrough:
        if (intercepting_) output_.passThrough(code, value);
        break;
    case KeyboardTranslator::Outcome::ignore: break;
    }
}

void LinuxEventSystem::keyboardRemoved(KeyboardId keyboard) {
    std::vector<std::uint16_t> released;
    for (const Held& held : held_)
        if (held.keyboard == keyboard) released.push_back(held.code);
    // Its keys were grabbed until it went: their releases take the same road as its presses did.
    const bool wasGrabbed = intercepting_;
    for (const std::uint16_t code : released) handleKey(keyboard, code, 0, wasGrabbed);
}

void LinuxEventSystem::deliver(const PlatformEvent& event) {
    // Not intercepting, the keyboards' own events already reached applications.
    if (intercepting_) output_.deliver(event, translator_.flags());
}

}  // namespace orvane
