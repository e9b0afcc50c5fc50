// Single-instance handover: one launch claims the instance, a later launch wakes it and hands it a short
// message; the running instance listens for messages. What a message means is the application's.
#pragma once

#include <QByteArray>
#include <QObject>

#include <chrono>
#include <optional>

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

    // False when the channel can never work here (it has said why on standard output).
    virtual bool isUsable() const { return true; }

    // noAnswer: an instance holds the claim and took no message within the patience; unusable: see isUsable.
    enum class Claim { ours, handedOver, noAnswer, unusable };
    // Of launches at the same moment, one claims the instance and the others hand `message` over to it.
    // An instance that is quitting still holds its claim but takes no message: then this launch tries
    // again until it is gone, for at most `patience`. The same holds for the moment between another
    // launch's claim and its first message taken. Blocks meanwhile, turning no event loop.
    Claim claimOrHandOver(const QByteArray& message, std::chrono::milliseconds patience);

signals:
    // Main thread, once per message received, with the message's bytes as sent.
    void messageReceived(const QByteArray& message);
};

// A channel over a port that the system registers under a fixed name, per user: registering is the
// claim (refused in one step while another process holds the name, released when that process ends),
// and a message is a request that the holder answers, so a launch hands over only to an instance
// that took the message. The two system calls are the subclass's; the rules are here. Main thread only.
class RequestPortInstanceChannel : public InstanceChannel {
    Q_OBJECT
public:
    using InstanceChannel::InstanceChannel;

    bool postMessage(const QByteArray& message) final;
    bool listen() final;
    // The port stays registered (the claim holds); every request from now on is refused.
    void stopListening() final;

protected:
    // The answer of an instance that took the message; any other answer, or none, is a refusal.
    static constexpr char takenAnswer[] = "taken";

    // Registers this process's port under the channel's name, each request to it answered on the main
    // thread by answer(); false when another process (or another channel here) holds the name.
    virtual bool registerPort() = 0;
    // Sends the request to the port registered under the name and waits a bounded time for its answer;
    // none when no port holds the name or its holder did not answer in time.
    virtual std::optional<QByteArray> sendRequest(const QByteArray& request) = 0;

    // The registered port's answer to a request, given at once: messageReceived follows from the event
    // loop, so a slow receiver never keeps the sender waiting.
    QByteArray answer(const QByteArray& request);

private:
    enum class State { unclaimed, taking, refusing };
    State state_ = State::unclaimed;
};

}  // namespace orvane
