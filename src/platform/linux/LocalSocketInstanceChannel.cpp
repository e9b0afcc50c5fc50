#include "platform/linux/LocalSocketInstanceChannel.h"

#include "platform/Diagnostics.h"
#include "platform/PrivateInstance.h"
#include "platform/linux/PrivateFolder.h"

#include <QByteArray>
#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>

#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/un.h>
#include <unistd.h>


namespace orvane {
namespace {

constexpr int connectTimeoutMs = 2000;
constexpr int writeTimeoutMs = 2000;

// $XDG_RUNTIME_DIR, else ~/.cache/orvane; empty when neither is the user's alone.
QString privateFolder() {
    if (const auto runtime = runtimeFolder(); !runtime.empty() && !makePrivateFolder(runtime)) return QString::fromStdString(runtime);
    const auto cache = userCacheFolder() / "orvane";
    return makePrivateFolder(cache) ? QString() : QString::fromStdString(cache);
}

std::unique_ptr<QLocalSocket> connectTo(const QString& path) {
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(path);
    if (!socket->waitForConnected(connectTimeoutMs)) return nullptr;
    return socket;
}

}  // namespace

QString LocalSocketInstanceChannel::defaultName() { return forThisInstance(QStringLiteral("com.user.Orvane")); }

LocalSocketInstanceChannel::LocalSocketInstanceChannel(QString name, QObject* parent) : InstanceChannel(parent) {
    const QString folder = privateFolder();
    if (folder.isEmpty()) {
        diagnostics::printLine("Orvane: no private folder for the instance channel ($XDG_RUNTIME_DIR or ~/.cache/orvane, "
                               "the user's own and closed to others); set XDG_RUNTIME_DIR to one");
        return;
    }
    const QString path = folder + QLatin1Char('/') + name;
    // The claim's name is the longer one, and a socket's path has room for 107 bytes.
    if (QFile::encodeName(path + QStringLiteral(".claim")).size() >= qsizetype(sizeof(sockaddr_un::sun_path))) {
        diagnostics::printLine("Orvane: the instance name " + name.toStdString() + " is too long for a socket under " +
                               folder.toStdString() + "; choose a shorter ORVANE_INSTANCE");
        return;
    }
    path_ = path;
}

// The server and its connections are children; their signals no longer reach this object by then.
LocalSocketInstanceChannel::~LocalSocketInstanceChannel() {
    if (claim_ >= 0) ::close(claim_);
}

bool LocalSocketInstanceChannel::isListening() const { return server_ && server_->isListening(); }

void LocalSocketInstanceChannel::activateOtherInstance() {}

bool LocalSocketInstanceChannel::postMessage(const QByteArray& message) {
    if (isListening() || message.isEmpty() || message.size() > maxMessageSize) return false;
    if (path_.isEmpty()) return false;
    const auto socket = connectTo(path_);
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
    if (path_.isEmpty()) return false;
    const QByteArray claimPath = QFile::encodeName(path_ + QStringLiteral(".claim"));
    claim_ = ::open(claimPath.constData(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600);
    if (claim_ < 0) return false;
    if (::flock(claim_, LOCK_EX | LOCK_NB) != 0) {
        ::close(std::exchange(claim_, -1));  // another instance holds it
        return false;
    }
    if (!server_) {
        server_ = new QLocalServer(this);
        server_->setSocketOptions(QLocalServer::UserAccessOption);
        connect(server_, &QLocalServer::newConnection, this, &LocalSocketInstanceChannel::acceptConnections);
    }
    // A socket file left by an instance that ended without closing it: the claim says it is gone.
    QLocalServer::removeServer(path_);
    if (server_->listen(path_)) return true;
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
