// The handover channels, two instances in one process under a name no other run uses: the same rules
// for the Linux socket channel and for the request-port channel (macOS's system calls on a Mac; here its
// ports live in this process).
#include "platform/InstanceChannel.h"
#ifdef __linux__
#include "platform/linux/LocalSocketInstanceChannel.h"
#endif

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>
#include <QProcess>
#include <QUuid>

#include <unistd.h>

using namespace orvane;
using namespace std::chrono_literals;

namespace {

QString uniqueName() { return QStringLiteral("orvane-test-") + QUuid::createUuid().toString(QUuid::WithoutBraces); }

// The system's namespace of ports, in this process: a name has at most one holder, which answers each
// request at once, unless it stands for an instance whose main thread is busy.
class InProcessPortChannel final : public RequestPortInstanceChannel {
public:
    explicit InProcessPortChannel(QString name) : name_(std::move(name)) {}
    ~InProcessPortChannel() override {
        if (ports().value(name_) == this) ports().remove(name_);
    }
    void activateOtherInstance() override {}
    using RequestPortInstanceChannel::answer;
    bool busy = false;

protected:
    bool registerPort() override {
        if (ports().contains(name_)) return false;
        ports().insert(name_, this);
        return true;
    }
    std::optional<QByteArray> sendRequest(const QByteArray& request) override {
        InProcessPortChannel* holder = ports().value(name_);
        if (!holder || holder->busy) return std::nullopt;
        return holder->answer(request);
    }

private:
    static QHash<QString, InProcessPortChannel*>& ports() {
        static QHash<QString, InProcessPortChannel*> registered;
        return registered;
    }
    QString name_;
};

template <typename Channel>
class InstanceChannelRules : public testing::Test {};

#ifdef __linux__
using Channels = testing::Types<LocalSocketInstanceChannel, InProcessPortChannel>;
#else
using Channels = testing::Types<InProcessPortChannel>;
#endif
TYPED_TEST_SUITE(InstanceChannelRules, Channels);

TYPED_TEST(InstanceChannelRules, oneClaimsTheOtherHandsOverToItAndClaimsOnceTheFirstIsGone) {
    const QString name = uniqueName();
    auto first = std::make_unique<TypeParam>(name);
    TypeParam second(name);
    EXPECT_FALSE(first->postMessage("hello"));
    ASSERT_TRUE(first->listen());
    QSignalSpy messages(first.get(), &InstanceChannel::messageReceived);

    EXPECT_FALSE(second.listen());
    EXPECT_FALSE(second.postMessage(""));
    EXPECT_FALSE(second.postMessage(QByteArray(InstanceChannel::maxMessageSize + 1, 'x')));
    const QByteArray longest(InstanceChannel::maxMessageSize, 'x');
    ASSERT_TRUE(second.postMessage(longest));
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.count() >= 1; }, 30000));
    QCoreApplication::processEvents();
    ASSERT_EQ(messages.count(), 1);
    EXPECT_EQ(messages[0][0].toByteArray(), longest);
    EXPECT_EQ(second.claimOrHandOver("again", 0ms), InstanceChannel::Claim::handedOver);

    first.reset();
    EXPECT_TRUE(second.listen());
}

TYPED_TEST(InstanceChannelRules, aQuittingInstanceKeepsItsClaimTakesNoMessageAndALaunchRunsOnceItIsGone) {
    const QString name = uniqueName();
    auto quitting = std::make_unique<TypeParam>(name);
    TypeParam launch(name);
    ASSERT_TRUE(quitting->listen());
    QSignalSpy messages(quitting.get(), &InstanceChannel::messageReceived);
    quitting->stopListening();

    EXPECT_FALSE(quitting->listen());
    EXPECT_FALSE(launch.listen());
    EXPECT_FALSE(launch.postMessage("hello"));
    EXPECT_EQ(launch.claimOrHandOver("hello", 100ms), InstanceChannel::Claim::noAnswer);
    QCoreApplication::processEvents();
    EXPECT_EQ(messages.count(), 0);

    quitting.reset();
    EXPECT_EQ(launch.claimOrHandOver("hello", 0ms), InstanceChannel::Claim::ours);
}

TEST(RequestPortInstanceChannel, onlyARequestTheHolderTookIsAHandover) {
    const QString name = uniqueName();
    InProcessPortChannel holder(name);
    InProcessPortChannel launch(name);
    QSignalSpy messages(&holder, &InstanceChannel::messageReceived);
    EXPECT_FALSE(launch.postMessage("hello"));  // nobody holds the name
    ASSERT_TRUE(holder.listen());

    holder.busy = true;
    EXPECT_FALSE(launch.postMessage("hello"));
    holder.busy = false;
    // A request that a well-behaved sender never makes is refused by the port itself.
    EXPECT_TRUE(holder.answer("").isEmpty());
    EXPECT_TRUE(holder.answer(QByteArray(InstanceChannel::maxMessageSize + 1, 'x')).isEmpty());
    QCoreApplication::processEvents();
    EXPECT_EQ(messages.count(), 0);

    EXPECT_TRUE(launch.postMessage("hello"));
    EXPECT_EQ(messages.count(), 0);  // the answer comes first, the message from the event loop
    QCoreApplication::processEvents();
    ASSERT_EQ(messages.count(), 1);
    EXPECT_EQ(messages[0][0].toByteArray(), "hello");
}

#ifdef __linux__
TEST(LocalSocketInstanceChannel, aSenderOfMoreThanAMessageIsCutOffAndNothingArrives) {
    const QString name = uniqueName();
    LocalSocketInstanceChannel primary(name);
    ASSERT_TRUE(primary.listen());
    QSignalSpy messages(&primary, &InstanceChannel::messageReceived);
    QLocalSocket client;
    client.connectToServer(primary.socketPath());
    ASSERT_TRUE(client.waitForConnected(30000));
    client.write(QByteArray(InstanceChannel::maxMessageSize + 1, 'x'));
    ASSERT_TRUE(client.waitForBytesWritten(30000));
    // The primary closes the connection itself once the bytes can no longer be a message.
    EXPECT_TRUE(QTest::qWaitFor([&] { return client.state() == QLocalSocket::UnconnectedState; }, 30000));
    QCoreApplication::processEvents();
    EXPECT_EQ(messages.count(), 0);
}

// Connections that never send hold only a few of the instance's descriptors, for a moment each, and a
// launch's message queued behind them still arrives.
TEST(LocalSocketInstanceChannel, idleConnectionsAreCappedAndDroppedAndAMessageStillArrives) {
    const auto openDescriptors = [] { return QDir(QStringLiteral("/proc/self/fd")).count(); };
    const QString name = uniqueName();
    LocalSocketInstanceChannel primary(name);
    ASSERT_TRUE(primary.listen());
    QSignalSpy messages(&primary, &InstanceChannel::messageReceived);
    const auto before = openDescriptors();
    std::vector<std::unique_ptr<QLocalSocket>> idle(3 * LocalSocketInstanceChannel::maxOpenConnections);
    for (auto& client : idle) {
        client = std::make_unique<QLocalSocket>();
        client->connectToServer(primary.socketPath());
        ASSERT_TRUE(client->waitForConnected(30000));
    }
    QTest::qWait(200);
    EXPECT_LE(openDescriptors() - before, qsizetype(idle.size()) + LocalSocketInstanceChannel::maxOpenConnections + 2);
    EXPECT_TRUE(LocalSocketInstanceChannel(name).postMessage("hello"));
    EXPECT_TRUE(QTest::qWaitFor([&] { return messages.count() == 1; }, 30000));
}

// Another local user (nobody) holding the abstract names a channel could use stops no launch, and
// can neither connect to the running instance nor take its claim.
TEST(LocalSocketInstanceChannel, anotherUserCanNeitherBlockNorReachTheInstance) {
    if (::geteuid() != 0) GTEST_SKIP() << "acting as another user (nobody) needs root";
    const QString name = uniqueName();
    const QString script = QStringLiteral(R"(
import os, socket, sys, time
if sys.argv[1] == "squat":
    held = [socket.socket(socket.AF_UNIX) for _ in sys.argv[2:]]
    for s, n in zip(held, sys.argv[2:]): s.bind("\0" + n); s.listen()
    print("ready", flush=True); time.sleep(60)
for attempt in (lambda: socket.socket(socket.AF_UNIX).connect(sys.argv[2]), lambda: os.open(sys.argv[3], os.O_RDWR | os.O_CREAT)):
    try: attempt(); print("reached")
    except OSError: print("refused")
)");
    const auto asNobody = [&](QProcess& process, const QStringList& arguments) {
        process.start("setpriv", QStringList{"--reuid=65534", "--regid=65534", "--clear-groups", "/usr/bin/python3", "-c", script} + arguments);
    };
    QProcess squatter, intruder;
    asNobody(squatter, {"squat", name, name + ".claim"});
    ASSERT_TRUE(squatter.waitForReadyRead(30000) && squatter.readAll().startsWith("ready")) << squatter.readAllStandardError().toStdString();
    LocalSocketInstanceChannel primary(name);
    EXPECT_TRUE(primary.listen());
    asNobody(intruder, {"reach", primary.socketPath(), primary.socketPath() + ".claim"});
    ASSERT_TRUE(intruder.waitForFinished(30000));
    EXPECT_EQ(intruder.readAllStandardOutput(), "refused\nrefused\n");
    squatter.kill();
    squatter.waitForFinished();
}
#endif

}  // namespace
