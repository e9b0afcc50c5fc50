// The instance channel on Linux: a local socket in the abstract namespace, named per user.
#pragma once

#include "platform/InstanceChannel.h"

#include <QString>

class QLocalServer;
class QLocalSocket;

namespace orvane {

// The running instance holds a socket bound to "<name>.claim" (its claim, bound or refused in one step
// by the kernel) and listens under the name; a later launch connects, writes the message, closes.
// An abstract name has no file and disappears with its last descriptor, so a crashed instance leaves
// nothing that could stop the next launch. Main thread only.
class LocalSocketInstanceChannel : public InstanceChannel {
    Q_OBJECT
public:
    // "com.user.Orvane-<uid>": each user's instances are separate; a private instance's is
    // "com.user.Orvane-<name>-<uid>".
    static QString defaultName();

    explicit LocalSocketInstanceChannel(QString name, QObject* parent = nullptr);
    ~LocalSocketInstanceChannel() override;

    // Nothing: desktops refuse to let one process raise another's window; the running instance raises
    // its configuration window itself when the message arrives.
    void activateOtherInstance() override;
    // Writes the message over a fresh connection and closes it, which marks the message's end. Blocks
    // for at most a moment: a local connection is accepted by the kernel, not by the other instance's
    // event loop.
    bool postMessage(const QByteArray& message) override;
    bool listen() override;
    void stopListening() override;

private:
    void acceptConnections();
    bool isListening() const;

    QString name_;
    int claim_ = -1;  // the bound claim socket while this is the instance
    QLocalServer* server_ = nullptr;
};

}  // namespace orvane
