#include "platform/tapchain/ChainEventSystem.h"

#include <QObject>

namespace orvane {

ChainEventSystem::ChainEventSystem() : self_(std::make_shared<ChainEventSystem*>(this)) {}

ChainEventSystem::~ChainEventSystem() { *self_ = nullptr; }

EventSystem::TapHandle ChainEventSystem::createTap(TapLocation location, TapPlacement placement, TapOptions options,
                                                   std::uint64_t eventMask, TapCallback callback, void* userInfo) {
    if (!mayCreateTap()) return nullptr;
    auto tap = chain_.addTap(location, placement, options, eventMask, callback, userInfo);
    std::erase_if(created_, [](const auto& weak) { return weak.expired(); });
    created_.push_back(tap);
    return tap;
}

EventSystem::SourceHandle ChainEventSystem::createRunLoopSource(const TapHandle& tap) {
    if (!tap || !mayCreateSource()) return nullptr;
    // Dropping the last reference to a source takes its tap out of the run loop: a tap whose
    // owner is gone must never be called again.
    return SourceHandle(new RunLoopSource{tap}, [self = std::weak_ptr<ChainEventSystem*>(self_)](RunLoopSource* source) {
        const bool wasLive = source->tap->inRunLoop && source->tap->enabled;
        source->tap->inRunLoop = false;
        if (source->tap->runLoopContext) source->tap->runLoopContext->deleteLater();
        delete source;
        if (const auto system = self.lock(); wasLive && system && *system) (*system)->tapsChanged();
    });
}

void ChainEventSystem::addToCurrentRunLoop(const SourceHandle& source) {
    if (!source) return;
    EventTap& tap = *source->tap;
    if (!tap.runLoopContext) tap.runLoopContext = new QObject;  // created here, so it lives in this thread
    tap.inRunLoop = true;
    tapsChanged();
}

void ChainEventSystem::removeFromCurrentRunLoop(const SourceHandle& source) {
    if (!source) return;
    source->tap->inRunLoop = false;
    tapsChanged();
}

void ChainEventSystem::enableTap(const TapHandle& tap, bool enable) {
    if (!tap) return;
    tap->enabled = enable;
    tapsChanged();
}

std::int64_t ChainEventSystem::integerField(const PlatformEvent* event, EventField field) const {
    switch (field) {
    case EventField::keyboardEventKeycode: return event->keyCode;
    case EventField::eventSourceUserData: return event->userData;
    }
    return 0;
}

void ChainEventSystem::setIntegerField(PlatformEvent* event, EventField field, std::int64_t value) {
    switch (field) {
    case EventField::keyboardEventKeycode: event->keyCode = static_cast<std::uint16_t>(value); break;
    case EventField::eventSourceUserData: event->userData = value; break;
    }
}

EventSystem::OwnedEvent ChainEventSystem::createKeyboardEvent(std::uint16_t virtualKeyCode, bool keyDown) {
    if (!mayCreateKeyboardEvent()) return OwnedEvent(nullptr, EventReleaser{this});
    auto* event = new PlatformEvent;
    event->type = keyDown ? 10 : 11;
    event->keyCode = virtualKeyCode;
    event->flags = currentFlags();
    return OwnedEvent(event, EventReleaser{this});
}

void ChainEventSystem::disableBySystem(const TapHandle& tap, std::uint32_t notificationType) {
    if (!tap) return;
    chain_.disableBySystem(*tap, notificationType);
    tapsChanged();
}

int ChainEventSystem::liveTapCount(bool activeOnly) const {
    int count = 0;
    for (const auto& weak : created_) {
        const auto tap = weak.lock();
        if (!tap || tap->released || !tap->enabled || !tap->inRunLoop) continue;
        if (!activeOnly || tap->options == TapOptions::activeFilter) ++count;
    }
    return count;
}

}  // namespace orvane
