// Single-instance handover: a later launch finds the running instance, wakes it and asks it to open its
// configuration window; the running instance listens for that request.
#pragma once

#include <QObject>

namespace orvane {

class InstanceChannel : public QObject {
    Q_OBJECT
public:
    // The one message between instances.
    static constexpr char openConfigMessage[] = "com.user.Orvane.OpenConfig";

    using QObject::QObject;

    // True when another instance for this user runs. An instance that listens never counts itself.
    virtual bool isAnotherInstanceRunning() = 0;
    // Brings the other instance to the front, where the platform lets one process do that for another.
    virtual void activateOtherInstance() = 0;
    // Sends the open-configuration message to the other instance; false when nothing received it.
    virtual bool postOpenConfig() = 0;
    // Makes this the running instance: from now on a message from a later launch emits
    // openConfigRequested(). False when another instance already holds the channel.
    virtual bool listen() = 0;

signals:
    // Main thread, once per message received.
    void openConfigRequested();
};

}  // namespace orvane
