#include "platform/linux/LocalSocketInstanceChannel.h"

#include "platform/PrivateInstance.h"

#include <QByteArray>
#include <QLocalServer>
#include <QLocalSocket>

#include <memory>

#include <unistd.h>

namespace orvane {
namespace {

constexpr int connectTimeoutMs = 2000;
constexpr int writeTimeoutMs = 2000;

std::unique_ptr<QLocalSocket> connectTo(const QString& name) {
    auto socket = std::make_unique<QLocalSocket>();
    socket->setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    socket->connectToServer(name);
    if (!socket->waitForConnected(connectTimeoutMs)) return nullptr;
    return socket;
}

}  // namespace

QString LocalSocketInstanceChannel::defaultName() {
    return QStringLiteral("%1-%2").arg(forThisInstance(QStringLiteral("com.user.Orvane"))).arg(::getuid());
}

LocalSocketInstanceChannel::LocalSocketInstanceChannel(QString name, QObject* parent)
    : InstanceChannel(parent), name_(std::move(name)) {}

// The server and its connections are children; their signals no longer reach this object by then.
LocalSocketInstanceChannel::~LocalSocketInstanceChannel() = default;

bool LocalSocketInstanceChannel::isListening() const { return server_ && server_->isListening(); }

bool LocalSocketInstanceChannel::isAnotherInstanceRunning() {
    if (isListening()) return false;  // the only listener is this instance
    return connectTo(name_) != nullptr;
}

void LocalSocketInstanceChannel::activateOtherInstance() {}

bool LocalSocketInstanceChannel::postMessage(const QByteArray& message) {
    if (isListening() || message.isEmpty() || message.size() > maxMessageSize) return false;
    const auto socket = connectTo(name_);
    if (!socket) return false;
    if (socket->write(message) != message.size()) return false;
    while (socket->bytesToWrite() > 0) {
        if (!socket->waitForBytesWritten(writeTimeoutMs)) return false;
    }
    socket->disconnectFromServer();
    return true;
}

bool LocalSocketInstanceChannel::listen() {
    if (isListening()) return true;
    if (!server_) {
        server_ = new QLocalServer(this);
        server_->setSocketOptions(QLocalServer::AbstractNamespaceOption);
        connect(server_, &QLocalServer::newConnection, this, &LocalSocketInstanceChannel::acceptConnections);
    }
    if (server_->listen(name_)) return true;
    // A live instance holds the name, or a socket file from a build that used the file namespace is in
    // the way; removing that file is harmless in the first case and clears the second.
    QLocalServer::removeServer(name_);
    return server_->listen(name_);
}

void LocalSocketInstanceChannel::acceptConnections() {
    while (QLocalSocket* socket = server_->nextPendingConnection()) {
        // A connection is one message, ended by the sender closing; a sender of more than the longest
        // message is cut off as soon as that shows, so a stray client holds at most a few hundred bytes.
        // A connection closed without a byte (a later launch looking for this one) is no message.
        socket->setReadBufferSize(maxMessageSize + 1);
        auto received = std::make_shared<QByteArray>();
        const auto readWithinLimit = [socket, received] {
            received->append(socket->read(maxMessageSize + 1 - received->size()));
            return received->size() <= maxMessageSize;
        };
        connect(socket, &QLocalSocket::readyRead, this, [this, socket, readWithinLimit] {
            if (readWithinLimit()) return;
            socket->disconnect(this);
            socket->abort();
            socket->deleteLater();
        });
        connect(socket, &QLocalSocket::disconnected, this, [this, socket, received, readWithinLimit] {
            const bool whole = readWithinLimit();
            socket->deleteLater();
            if (whole && !received->isEmpty()) emit messageReceived(*received);
        });
    }
}

}  // namespace orvane
