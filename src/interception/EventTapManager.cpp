#include "interception/EventTapManager.h"

#include "interception/TapEventReading.h"

#include "platform/Diagnostics.h"
#include "platform/SharedInstance.h"
#include "store/MappingStore.h"

namespace orvane {

EventTapManager::EventTapManager(EventSystem& events, MappingStore& store, QObject* parent)
    : QObject(parent), events_(events), store_(store), engine_(store) {}

EventTapManager::~EventTapManager() = default;

EventTapManager& EventTapManager::shared() {
    return SharedInstance<EventTapManager>::get([] { return std::make_unique<EventTapManager>(EventSystem::shared(), MappingStore::shared()); });
}

void EventTapManager::installShared(std::unique_ptr<EventTapManager> manager) { SharedInstance<EventTapManager>::install(std::move(manager)); }

bool EventTapManager::start() {
    if (isRunning_) return true;
    if (stoppedForGood_) return false;
    switch (tap_.install(events_, TapOptions::activeFilter, &tapCallback, this, /*keepTapWithoutSource=*/false)) {
    case InstalledTap::Result::tapFailed:
        setLastError(QStringLiteral("Failed to create event tap. Please grant Accessibility permission."));
        return false;
    case InstalledTap::Result::sourceFailed:
        setLastError(QStringLiteral("Failed to create run loop source"));
        return false;
    case InstalledTap::Result::installed: break;
    }
    engine_.reset();
    engine_.setAloneTime(store_.aloneTime());
    setRunning(true);
    setLastError(std::nullopt);
    store_.updateCapsLockHIDRemap();
    diagnostics::printLine("Event tap started successfully");
    return true;
}

void EventTapManager::stopForGood() {
    stoppedForGood_ = true;
    stop();
}

void EventTapManager::stop() {
    if (!isRunning_) return;
    tap_.uninstall(events_);
    setRunning(false);
    // Caps Lock works normally again; the store's flags stay, so the next start re-applies them.
    store_.clearHIDRemapping();
    diagnostics::printLine("Event tap stopped");
}

PlatformEvent* EventTapManager::tapCallback(std::uint32_t type, PlatformEvent* event, void* userInfo) {
    if (!userInfo) return event;
    return static_cast<EventTapManager*>(userInfo)->handle(type, event);
}

PlatformEvent* EventTapManager::handle(std::uint32_t type, PlatformEvent* event) {
    if (type == TapEventType::tapDisabledByTimeout || type == TapEventType::tapDisabledByUserInput) {
        diagnostics::printLine("Event tap was disabled, re-enabling...");
        if (tap_.tap()) events_.enableTap(tap_.tap(), true);
        return event;
    }
    const TapDecision decision = engine_.handleEvent(readTapEvent(events_, type, event));
    switch (decision.kind()) {
    case TapDecision::Kind::pass:
        if (decision.passFlags()) events_.setFlags(event, *decision.passFlags());
        return event;
    case TapDecision::Kind::drop: return nullptr;
    case TapDecision::Kind::replace: post(decision); return nullptr;
    }
    return event;
}

// Every posted event carries the marker, so it passes this tap untouched when it comes round again.
void EventTapManager::post(const TapDecision& decision) {
    for (const SyntheticKeyEvent& synthetic : decision) {
        auto event = events_.createKeyboardEvent(synthetic.virtualKeyCode, synthetic.isKeyDown);
        if (!event) {
            diagnostics::printLine("Failed to create keyboard event for keycode " + std::to_string(synthetic.virtualKeyCode));
            continue;
        }
        if (synthetic.isModifierChange) events_.setType(event.get(), TapEventType::flagsChanged);
        if (synthetic.flags) events_.setFlags(event.get(), *synthetic.flags);
        events_.setIntegerField(event.get(), EventField::eventSourceUserData, syntheticEventMarker);
        events_.postToHID(event.get());
    }
}

void EventTapManager::setRunning(bool running) {
    if (isRunning_ == running) return;
    isRunning_ = running;
    emit isRunningChanged(running);
}

void EventTapManager::setLastError(std::optional<QString> error) {
    if (lastError_ == error) return;
    lastError_ = std::move(error);
    emit lastErrorChanged();
}

}  // namespace orvane
