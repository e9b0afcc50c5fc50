#include "platform/linux/LocalSocketInstanceChannel.h"

#include "platform/PrivateInstance.h"

#include <QByteArray>
#include <QLocalServer>
#include <QLocalSocket>

#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
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

// A socket bound to the abstract name, or -1 when another process holds it (or the name is too long).
int bindAbstract(const QString& name) {
    const QByteArray bytes = name.toUtf8();
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (bytes.size() + 1 > qsizetype(sizeof address.sun_path)) return -1;
    std::memcpy(address.sun_path + 1, bytes.constData(), bytes.size());  // a leading NUL: abstract
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (fd < 0) return -1;
    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + 1 + bytes.size());
    if (::bind(fd, reinterpret_cast<const sockaddr*>(&address), length) == 0) return fd;
    ::close(fd);
    return -1;
}

}  // namespace

QString LocalSocketInstanceChannel::defaultName() {
    return QStringLiteral("%1-%2").arg(forThisInstance(QStringLiteral("com.user.Orvane"))).arg(::getuid());
}

LocalSocketInstanceChannel::LocalSocketInstanceChannel(QString name, QObject* parent)
    : InstanceChannel(parent), name_(std::move(name)) {}

// The server and its connections are children; their signals no longer reach this object by then.
LocalSocketInstanceChannel::~LocalSocketInstanceChannel() {
    if (claim_ >= 0) ::close(claim_);
}

bool LocalSocketInstanceChannel::isListening() const { return server_ && server_->isListening(); }

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
    if (claim_ >= 0) return isListening();
    claim_ = bindAbstract(name_ + QStringLiteral(".claim"));
    if (claim_ < 0) return false;
    if (!server_) {
        server_ = new QLocalServer(this);
        server_->setSocketOptions(QLocalServer::AbstractNamespaceOption);
        connect(server_, &QLocalServer::newConnection, this, &LocalSocketInstanceChannel::acceptConnections);
    }
    if (server_->listen(name_)) return true;
    // A live instance holds the name, or a socket file from a build that used the file namespace is in
    // the way; removing that file is harmless in the first case and clears the second.
    QLocalServer::removeServer(name_);
    if (server_->listen(name_)) return true;
    // An instance of a build without the claim listens under the name (or one that is ending still
    // does, for a moment): it is the running instance.
    ::close(std::exchange(claim_, -1));
    return false;
}

void LocalSocketInstanceChannel::stopListening() {
    if (server_) server_->close();
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
