#include "platform/sim/SimEventSystem.h"

#include <QObject>
#include <QThread>

namespace orvane {

SimEventSystem::SimEventSystem(SimAccessibility& accessibility) : accessibility_(accessibility) { setOutput(nullptr); }

EventSystem::TapHandle SimEventSystem::createTap(TapLocation location, TapPlacement placement, TapOptions options,
                                                 std::uint64_t eventMask, TapCallback callback, void* userInfo) {
    if (!accessibility_.trusted() || tapCreationFails_) return nullptr;
    auto tap = chain_.addTap(location, placement, options, eventMask, callback, userInfo);
    std::erase_if(created_, [](const auto& weak) { return weak.expired(); });
    created_.push_back(tap);
    return tap;
}

EventSystem::SourceHandle SimEventSystem::createRunLoopSource(const TapHandle& tap) {
    if (!tap || sourceCreationFails_) return nullptr;
    // Dropping the last reference to a source takes its tap out of the run loop: a tap whose
    // owner is gone must never be called again.
    return SourceHandle(new RunLoopSource{tap}, [](RunLoopSource* source) {
        source->tap->inRunLoop = false;
        if (source->tap->runLoopContext) source->tap->runLoopContext->deleteLater();
        delete source;
    });
}

void SimEventSystem::addToCurrentRunLoop(const SourceHandle& source) {
    if (!source) return;
    EventTap& tap = *source->tap;
    if (!tap.runLoopContext) tap.runLoopContext = new QObject;  // created here, so it lives in this thread
    tap.inRunLoop = true;
}

void SimEventSystem::removeFromCurrentRunLoop(const SourceHandle& source) {
    if (source) source->tap->inRunLoop = false;
}

void SimEventSystem::enableTap(const TapHandle& tap, bool enable) {
    if (tap) tap->enabled = enable;
}

std::int64_t SimEventSystem::integerField(const PlatformEvent* event, EventField field) const {
    switch (field) {
    case EventField::keyboardEventKeycode: return event->keyCode;
    case EventField::eventSourceUserData: return event->userData;
    }
    return 0;
}

void SimEventSystem::setIntegerField(PlatformEvent* event, EventField field, std::int64_t value) {
    switch (field) {
    case EventField::keyboardEventKeycode: event->keyCode = static_cast<std::uint16_t>(value); break;
    case EventField::eventSourceUserData: event->userData = value; break;
    }
}

EventSystem::OwnedEvent SimEventSystem::createKeyboardEvent(std::uint16_t virtualKeyCode, bool keyDown) {
    if (keyboardEventFailures_ > 0) {
        --keyboardEventFailures_;
        return OwnedEvent(nullptr, EventReleaser{this});
    }
    auto* event = new PlatformEvent;
    event->type = keyDown ? 10 : 11;
    event->keyCode = virtualKeyCode;
    return OwnedEvent(event, EventReleaser{this});
}

std::vector<PlatformEvent> SimEventSystem::takeDelivered() {
    std::vector<PlatformEvent> taken;
    taken.swap(delivered_);
    return taken;
}

void SimEventSystem::setOutput(TapChain::Output output) {
    if (output) chain_.setOutput(std::move(output));
    else chain_.setOutput([this](const PlatformEvent& event) { delivered_.push_back(event); });
}

void SimEventSystem::disableBySystem(const TapHandle& tap, std::uint32_t notificationType) {
    if (tap) chain_.disableBySystem(*tap, notificationType);
}

int SimEventSystem::activeTapCount() const {
    int count = 0;
    for (const auto& weak : created_)
        if (const auto tap = weak.lock(); tap && !tap->released && tap->enabled && tap->inRunLoop) ++count;
    return count;
}

}  // namespace orvane
