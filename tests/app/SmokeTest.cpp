// The real binary: it starts, a second launch hands over and exits 0, and SIGTERM quits it in order,
// restoring Caps Lock through the HID tool.
#include "FakeHidutil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

namespace {

bool waitForOutput(QProcess& process, QByteArray& output, const QByteArray& wanted) {
    for (int i = 0; i < 1200 && !output.contains(wanted); ++i) {
        process.waitForReadyRead(100);
        output += process.readAllStandardOutput();
        if (process.state() == QProcess::NotRunning) break;
    }
    return output.contains(wanted);
}

}  // namespace

TEST(Smoke, startsHandsOverAndQuitsInOrderOnSigterm) {
    QTemporaryDir config;
    orvane::testing::FakeHidutil tool;
    // A check done a moment ago: the smoke run sends no update request.
    QDir().mkpath(config.filePath("user.com"));
    QFile settings(config.filePath("user.com/Orvane.conf"));
    ASSERT_TRUE(settings.open(QIODevice::WriteOnly));
    settings.write(QByteArray("[General]\nOrvane.LastUpdateCheck=") + QByteArray::number(QDateTime::currentSecsSinceEpoch()) + "\n");
    settings.close();

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_QUICK_BACKEND", "software");
    environment.insert("XDG_CONFIG_HOME", config.path());
    environment.insert("ORVANE_HIDUTIL", tool.path());

    QProcess first;
    first.setProcessEnvironment(environment);
    first.start(ORVANE_BINARY, {});
    QByteArray firstOutput;
    ASSERT_TRUE(waitForOutput(first, firstOutput, "Event tap started successfully")) << firstOutput.toStdString()
                                                                                      << first.readAllStandardError().toStdString();

    QProcess second;
    second.setProcessEnvironment(environment);
    second.start(ORVANE_BINARY, {});
    ASSERT_TRUE(second.waitForFinished(60000));
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_FALSE(second.readAllStandardOutput().contains("Event tap started successfully"));  // no start-up in the second
    EXPECT_EQ(first.state(), QProcess::Running);

    const auto clearsBefore = tool.calls().size();
    first.terminate();  // SIGTERM
    ASSERT_TRUE(first.waitForFinished(60000));
    firstOutput += first.readAllStandardOutput();
    EXPECT_EQ(first.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(first.exitCode(), 0);
    EXPECT_TRUE(firstOutput.contains("Event tap stopped\n")) << firstOutput.toStdString();
    const auto calls = tool.calls();
    ASSERT_GE(calls.size(), clearsBefore + 2);  // stopping the tap, then once more on the way out
    EXPECT_EQ(calls.back().last(), R"({"UserKeyMapping":[]})");
}
