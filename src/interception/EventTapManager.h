// Owns the session-wide keyboard tap: starts and stops interception and adapts events to the engine.
#pragma once

#include "interception/InstalledTap.h"
#include "interception/RemapEngine.h"
#include "platform/EventSystem.h"

#include <QObject>
#include <QString>

#include <memory>
#include <optional>

namespace orvane {

class MappingStore;

// Main thread only: start() puts the tap's source in the calling thread's run loop, so the
// callback, and with it the engine, runs there too.
class EventTapManager : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isRunning READ isRunning NOTIFY isRunningChanged)
    Q_PROPERTY(QString lastError READ lastErrorText NOTIFY lastErrorChanged)

public:
    EventTapManager(EventSystem& events, MappingStore& store, QObject* parent = nullptr);
    // Releases a tap it still holds without disabling it.
    ~EventTapManager() override;

    // The process-wide manager over the build's event system and the shared store.
    static EventTapManager& shared();
    static void installShared(std::unique_ptr<EventTapManager> manager);

    bool isRunning() const { return isRunning_; }
    const std::optional<QString>& lastError() const { return lastError_; }
    QString lastErrorText() const { return lastError_.value_or(QString()); }

    // True when interception runs afterwards (also when it already ran).
    Q_INVOKABLE bool start();
    // Also takes the Caps Lock remapping out of the HID layer, after the Caps Lock decisions already
    // queued, and returns once the tool is done (the event loop turns meanwhile).
    Q_INVOKABLE void stop();
    // Stops for the rest of the process (quitting): every later start() is refused, so nothing that
    // ends afterwards, such as a recording, can start interception after the final clear.
    void stopForGood();

    // The tap while running (the system may disable it; the simulator does so on request).
    const EventSystem::TapHandle& eventTap() const { return tap_.tap(); }
    // What the engine would make of this event for a key with two roles (the debugger's account).
    std::optional<DualRoleOutcome> dualRoleOutcome(const TapEvent& event) const {
        return isRunning_ ? engine_.outcomeOf(event) : std::nullopt;
    }

signals:
    void isRunningChanged(bool isRunning);
    void lastErrorChanged();

private:
    static PlatformEvent* tapCallback(std::uint32_t type, PlatformEvent* event, void* userInfo);
    PlatformEvent* handle(std::uint32_t type, PlatformEvent* event);
    void post(const TapDecision& decision);
    void setRunning(bool running);
    void setLastError(std::optional<QString> error);

    EventSystem& events_;
    MappingStore& store_;
    RemapEngine engine_;
    bool isRunning_ = false;
    bool stoppedForGood_ = false;
    std::optional<QString> lastError_;
    InstalledTap tap_;
};

}  // namespace orvane
