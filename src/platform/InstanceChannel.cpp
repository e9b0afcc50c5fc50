#include "platform/InstanceChannel.h"

#include <QDeadlineTimer>
#include <QThread>

namespace orvane {
namespace {

constexpr unsigned long claimRetryMs = 50;

}  // namespace

InstanceChannel::Claim InstanceChannel::claimOrHandOver(const QByteArray& message, std::chrono::milliseconds patience) {
    const QDeadlineTimer deadline(patience);
    for (;;) {
        if (listen()) return Claim::ours;
        activateOtherInstance();
        if (postMessage(message)) return Claim::handedOver;
        if (deadline.hasExpired()) return Claim::noAnswer;
        QThread::msleep(claimRetryMs);
    }
}

}  // namespace orvane
