// Two instances of the handover channel in one process, under a name no other run uses.
#include "platform/linux/LocalSocketInstanceChannel.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTest>
#include <QUuid>

using namespace orvane;

static QString uniqueName() { return QStringLiteral("orvane-test-") + QUuid::createUuid().toString(QUuid::WithoutBraces); }

TEST(InstanceChannel, oneClaimsTheOtherHandsOverToItAndClaimsOnceTheFirstIsGone) {
    const QString name = uniqueName();
    auto first = std::make_unique<LocalSocketInstanceChannel>(name);
    LocalSocketInstanceChannel second(name);
    EXPECT_FALSE(first->postMessage("hello"));
    ASSERT_TRUE(first->listen());
    QSignalSpy messages(first.get(), &InstanceChannel::messageReceived);

    const QByteArray tooLong(InstanceChannel::maxMessageSize + 1, 'x');
    EXPECT_FALSE(second.listen() || second.postMessage("") || second.postMessage(tooLong));
    const QByteArray longest(InstanceChannel::maxMessageSize, 'x');
    ASSERT_TRUE(second.postMessage(longest));
    ASSERT_TRUE(QTest::qWaitFor([&] { return messages.count() >= 1; }, 30000));
    QCoreApplication::processEvents();
    ASSERT_EQ(messages.count(), 1);
    EXPECT_EQ(messages[0][0].toByteArray(), longest);

    first.reset();
    EXPECT_TRUE(second.listen());
}

TEST(InstanceChannel, aSenderOfMoreThanAMessageIsCutOffAndNothingArrives) {
    const QString name = uniqueName();
    LocalSocketInstanceChannel primary(name);
    ASSERT_TRUE(primary.listen());
    QSignalSpy messages(&primary, &InstanceChannel::messageReceived);
    QLocalSocket client;
    client.setSocketOptions(QLocalSocket::AbstractNamespaceOption);
    client.connectToServer(name);
    ASSERT_TRUE(client.waitForConnected(30000));
    client.write(QByteArray(InstanceChannel::maxMessageSize + 1, 'x'));
    ASSERT_TRUE(client.waitForBytesWritten(30000));
    // The primary closes the connection itself once the bytes can no longer be a message.
    EXPECT_TRUE(QTest::qWaitFor([&] { return client.state() == QLocalSocket::UnconnectedState; }, 30000));
    QCoreApplication::processEvents();
    EXPECT_EQ(messages.count(), 0);
}
