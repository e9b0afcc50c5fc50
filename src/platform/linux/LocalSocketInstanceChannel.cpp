#include "platform/linux/LocalSocketInstanceChannel.h"

#include "platform/Diagnostics.h"
#include "platform/PrivateInstance.h"
#include "platform/linux/PrivateFolder.h"

#include <QByteArray>
#include <QFile>
#include <QLocalSocket>
#include <QSocketNotifier>
#include <QTimer>

#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
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

// A listening socket at `path`, mode 0600 in a folder closed to others; -1 when it cannot be had.
int listenAt(const QByteArray& path) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
    if (fd < 0) return -1;
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
    // A socket file left by an instance that ended without closing it: the claim says it is gone.
    ::unlink(path.constData());
    const mode_t previous = ::umask(0177);
    const bool bound = ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    ::umask(previous);
    if (bound && ::listen(fd, SOMAXCONN) == 0) return fd;
    ::close(fd);
    return -1;
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

// The connections and the notifier are children; their signals no longer reach this object by then.
LocalSocketInstanceChannel::~LocalSocketInstanceChannel() {
    stopListening();
    if (claim_ >= 0) ::close(claim_);
}

bool LocalSocketInstanceChannel::isListening() const { return listener_ >= 0; }

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
    listener_ = listenAt(QFile::encodeName(path_));
    if (listener_ < 0) {
        ::close(std::exchange(claim_, -1));
        return false;
    }
    accepting_ = new QSocketNotifier(listener_, QSocketNotifier::Read, this);
    connect(accepting_, &QSocketNotifier::activated, this, &LocalSocketInstanceChannel::acceptConnections);
    return true;
}

void LocalSocketInstanceChannel::stopListening() {
    if (listener_ < 0) return;
    delete std::exchange(accepting_, nullptr);
    ::close(std::exchange(listener_, -1));
    ::unlink(QFile::encodeName(path_).constData());
}

void LocalSocketInstanceChannel::acceptConnections() {
    bool outOfDescriptors = false;
    while (isListening() && openConnections_ < maxOpenConnections) {
        const int fd = ::accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
        if (fd < 0) {
            if (errno == EINTR || errno == ECONNABORTED) continue;
            outOfDescriptors = errno != EAGAIN && errno != EWOULDBLOCK;
            break;
        }
        auto* socket = new QLocalSocket(this);
        socket->setReadBufferSize(maxMessageSize + 1);
        socket->setSocketDescriptor(fd);
        ++openConnections_;
        // Closed, cut off or dropped: its place goes to the next connection waiting.
        connect(socket, &QObject::destroyed, this, [this] {
            --openConnections_;
            acceptConnections();
        });
        read(socket);
    }
    if (!isListening()) return;
    // With every place taken, further connections wait in the kernel's queue, costing this process
    // nothing; when no descriptor is left for one, it waits there a moment before the next try.
    accepting_->setEnabled(openConnections_ < maxOpenConnections && !outOfDescriptors);
    if (outOfDescriptors) QTimer::singleShot(idleTimeoutMs, this, &LocalSocketInstanceChannel::acceptConnections);
}

void LocalSocketInstanceChannel::read(QLocalSocket* socket) {
    // A connection is one message, ended by the sender closing; a sender of more than the longest
    // message is cut off as soon as that shows, so a stray client holds at most a few hundred bytes.
    // A connection closed without a byte (a later launch looking for this one) is no message.
    auto received = std::make_shared<QByteArray>();
    const auto readWithinLimit = [socket, received] {
        received->append(socket->read(maxMessageSize + 1 - received->size()));
        return received->size() <= maxMessageSize;
    };
    auto ended = std::make_shared<bool>(false);
    const auto drop = [socket, ended] {
        if (std::exchange(*ended, true)) return;
        socket->abort();
        socket->deleteLater();
    };
    const auto finish = [this, socket, received, ended, readWithinLimit] {
        if (std::exchange(*ended, true)) return;
        const bool whole = readWithinLimit();
        socket->deleteLater();
        if (whole && !received->isEmpty()) emit messageReceived(*received);
    };
    connect(socket, &QLocalSocket::readyRead, this, [readWithinLimit, drop] {
        if (!readWithinLimit()) drop();
    });
    connect(socket, &QLocalSocket::disconnected, this, finish);
    // A sender writes its message as soon as it is connected; one that lingers only holds a place.
    QTimer::singleShot(idleTimeoutMs, socket, drop);
    // One that waited its turn may have sent its message and closed meanwhile, signalled to no one.
    if (socket->state() == QLocalSocket::UnconnectedState) finish();
    else if (socket->bytesAvailable() > 0 && !readWithinLimit()) drop();
}

}  // namespace orvane
