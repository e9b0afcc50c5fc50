// The instance channel on macOS: the system's list of running applications and distributed notifications.
#pragma once

#include "platform/InstanceChannel.h"

#include <QList>
#include <QString>

#include <memory>

namespace orvane {

// Another instance is a running application with the same bundle identifier; a message is a distributed
// notification named by the message's text, with no object and no user info, delivered immediately.
// Main thread only.
class RunningApplicationChannel final : public InstanceChannel {
public:
    // The identifier of the applications that count as instances, and the messages this one listens for.
    RunningApplicationChannel(QString bundleIdentifier, QList<QByteArray> messages, QObject* parent = nullptr);
    ~RunningApplicationChannel() override;

    // Activates the first other instance with all its windows, ignoring other applications.
    void activateOtherInstance() override;
    // A notification has no receipt: true when it was posted while another instance runs.
    bool postMessage(const QByteArray& message) override;
    // Another running application with the identifier holds the claim: the system checks at each
    // launch, so the claim can be no more atomic than that.
    bool listen() override;
    // The claim lasts as long as this application runs.
    void stopListening() override;

private:
    bool isAnotherInstanceRunning() const;
    struct Observers;

    QString bundleIdentifier_;
    QList<QByteArray> messages_;
    std::unique_ptr<Observers> observers_;  // present while listening
};

}  // namespace orvane
