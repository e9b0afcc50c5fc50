#include "platform/InstanceChannel.h"

#include <QDeadlineTimer>
#include <QThread>

namespace orvane {
namespace {

constexpr unsigned long claimRetryMs = 50;

}  // namespace

InstanceChannel::Claim InstanceChannel::claimOrHandOver(const QByteArray& message, std::chrono::milliseconds patience) {
    if (!isUsable()) return Claim::unusable;
    const QDeadlineTimer deadline(patience);
    for (;;) {
        if (listen()) return Claim::ours;
        activateOtherInstance();
        if (postMessage(message)) return Claim::handedOver;
        if (deadline.hasExpired()) return Claim::noAnswer;
        QThread::msleep(claimRetryMs);
    }
}

bool RequestPortInstanceChannel::postMessage(const QByteArray& message) {
    if (state_ != State::unclaimed || message.isEmpty() || message.size() > maxMessageSize) return false;
    const std::optional<QByteArray> reply = sendRequest(message);
    return reply && *reply == takenAnswer;
}

bool RequestPortInstanceChannel::listen() {
    if (state_ == State::unclaimed && registerPort()) state_ = State::taking;
    return state_ == State::taking;
}

void RequestPortInstanceChannel::stopListening() {
    if (state_ == State::taking) state_ = State::refusing;
}

QByteArray RequestPortInstanceChannel::answer(const QByteArray& request) {
    if (state_ != State::taking || request.isEmpty() || request.size() > maxMessageSize) return {};
    QMetaObject::invokeMethod(this, [this, request] { emit messageReceived(request); }, Qt::QueuedConnection);
    return takenAnswer;
}

}  // namespace orvane
