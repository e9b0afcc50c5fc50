// Single-instance handover: one launch claims the instance, a later launch wakes it and hands it a short
// message; the running instance listens for messages. What a message means is the application's.
#pragma once

#include <QByteArray>
#include <QObject>

#include <chrono>

namespace orvane {

class InstanceChannel : public QObject {
    Q_OBJECT
public:
    // The longest message the channel carries. A message is never empty.
    static constexpr qsizetype maxMessageSize = 256;

    using QObject::QObject;

    // Brings the other instance to the front, where the platform lets one process do that for another.
    virtual void activateOtherInstance() = 0;
    // Sends one message to the other instance; false when nothing received it, or when the message is
    // empty or longer than maxMessageSize.
    virtual bool postMessage(const QByteArray& message) = 0;
    // Makes this the running instance: from now on each message from a later launch emits
    // messageReceived(). False when another instance already holds the channel. The check and the
    // claim are one step: of launches at the same moment, one gets true.
    virtual bool listen() = 0;
    // For an instance that has begun quitting: no more messages are taken, yet the claim holds until
    // this object or the process ends, so a later launch neither hands over to it nor runs beside it.
    virtual void stopListening() = 0;

    enum class Claim { ours, handedOver, noAnswer };
    // Of launches at the same moment, one claims the instance and the others hand `message` over to it.
    // An instance that is quitting still holds its claim but takes no message: then this launch tries
    // again until it is gone, for at most `patience`. The same holds for the moment between another
    // launch's claim and its first message taken. Blocks meanwhile, turning no event loop.
    Claim claimOrHandOver(const QByteArray& message, std::chrono::milliseconds patience);

signals:
    // Main thread, once per message received, with the message's bytes as sent.
    void messageReceived(const QByteArray& message);
};

}  // namespace orvane
