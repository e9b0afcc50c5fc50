// Two instances of the handover channel in one process, under a name no other run uses.
#include "WaitUntil.h"
#include "platform/linux/LocalSocketInstanceChannel.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QUuid>

using namespace orvane;
using orvane::testing::waitUntil;

namespace {

QString uniqueName() { return QStringLiteral("orvane-test-") + QUuid::createUuid().toString(QUuid::WithoutBraces); }

}  // namespace

TEST(InstanceChannel, aSecondLaunchFindsTheFirstItsMessageArrivesOnceAndTheNameIsFreeOnceTheFirstIsGone) {
    const QString name = uniqueName();
    auto first = std::make_unique<LocalSocketInstanceChannel>(name);
    LocalSocketInstanceChannel second(name);
    EXPECT_FALSE(first->isAnotherInstanceRunning());
    EXPECT_FALSE(first->postOpenConfig());
    ASSERT_TRUE(first->listen());
    EXPECT_FALSE(first->isAnotherInstanceRunning());  // never itself
    QSignalSpy requests(first.get(), &InstanceChannel::openConfigRequested);

    ASSERT_TRUE(second.isAnotherInstanceRunning());
    EXPECT_FALSE(second.listen());
    ASSERT_TRUE(second.postOpenConfig());
    ASSERT_TRUE(waitUntil([&] { return requests.count() >= 1; }));
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
    EXPECT_EQ(requests.count(), 1);

    first.reset();
    EXPECT_FALSE(second.isAnotherInstanceRunning());
    EXPECT_TRUE(second.listen());
}

TEST(InstanceChannel, otherMessagesAreCutOffAndIgnored) {
    const QString name = uniqueName();
    LocalSocketInstanceChannel primary(name);
    ASSERT_TRUE(primary.listen());
    QSignalSpy requests(&primary, &InstanceChannel::openConfigRequested);

    const QByteArray strays[] = {"hello", "com.user.Orvane.OpenConfigX", "com.user.Orvane.OpenConfiX"};
    for (const QByteArray& message : strays) {
        SCOPED_TRACE(message.toStdString());
        QLocalSocket client;
        client.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
        client.connectToServer(name);
        ASSERT_TRUE(client.waitForConnected(30000));
        client.write(message);
        ASSERT_TRUE(client.waitForBytesWritten(30000));
        // The primary closes the connection itself once the bytes can no longer be the message.
        EXPECT_TRUE(waitUntil([&] { return client.state() == QLocalSocket::UnconnectedState; }));
    }
    EXPECT_EQ(requests.count(), 0);
}
