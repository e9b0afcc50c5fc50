// The instance channel on Linux: a local socket in a folder of the user's own, named per user.
#pragma once

#include "platform/InstanceChannel.h"

#include <QString>

class QSocketNotifier;
class QLocalSocket;

namespace orvane {

// The running instance holds an exclusive lock on "<name>.claim" (its claim, taken or refused in one
// step by the kernel, and let go by the kernel when the process ends however it ends) and listens on
// the socket "<name>"; a later launch connects, writes the message, closes. Both live in
// $XDG_RUNTIME_DIR, or ~/.cache/orvane without it: folders no other user may enter, so no one else
// can take the name, block the claim or hear or send a message. Main thread only.
class LocalSocketInstanceChannel : public InstanceChannel {
    Q_OBJECT
public:
    // "com.user.Orvane", or "com.user.Orvane-<name>" for a private instance.
    static QString defaultName();

    // `name` is placed in the user's private folder.
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
    bool isUsable() const override { return !path_.isEmpty(); }
    // At most this many connections are read at once; more wait in the kernel's queue, costing this
    // process nothing. A connection that has not ended its message within idleTimeoutMs is dropped.
    static constexpr int maxOpenConnections = 8;
    static constexpr int idleTimeoutMs = 1000;
    // Where the running instance listens; empty when no private folder could be had.
    QString socketPath() const { return path_; }

private:
    void acceptConnections();
    void read(QLocalSocket* socket);
    bool isListening() const;

    QString path_;     // the socket; empty when no private folder could be had
    int claim_ = -1;   // the locked claim file while this is the instance
    int listener_ = -1;  // the listening socket while this is the instance and takes messages
    QSocketNotifier* accepting_ = nullptr;
    int openConnections_ = 0;
};

}  // namespace orvane
