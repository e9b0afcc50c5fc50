// The real binary as a private instance: it starts, a second launch of that instance hands over and
// exits 0, a launch of another instance starts on its own, and SIGTERM quits in order, restoring
// Caps Lock through the HID tool.
#include "FakeHidutil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QProcess>
#include <QSettings>
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
    // Private instances of this run only: a running Orvane of the user's is left alone.
    const QString instance = QStringLiteral("smoke-%1").arg(QCoreApplication::applicationPid());
    const QString otherInstance = instance + QStringLiteral("-other");
    // A check done a moment ago: the smoke run sends no update request. The first instance finds a
    // Caps Lock remapping left by an earlier run, which it clears in its own settings.
    const auto settingsOf = [&](const QString& name) { return config.filePath("user.com/Orvane-" + name + ".conf"); };
    QDir().mkpath(config.filePath("user.com"));
    for (const QString& name : {instance, otherInstance}) {
        QSettings settings(settingsOf(name), QSettings::IniFormat);
        settings.setValue("Orvane.LastUpdateCheck", QDateTime::currentSecsSinceEpoch());
        if (name == instance) settings.setValue("Orvane.CapsLockHIDRemapped", true);
    }

    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_QPA_PLATFORM", "offscreen");
    environment.insert("QT_QUICK_BACKEND", "software");
    environment.insert("XDG_CONFIG_HOME", config.path());
    environment.insert("ORVANE_HIDUTIL", tool.path());
    environment.insert("ORVANE_INSTANCE", instance);

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

    QProcess other;
    environment.insert("ORVANE_INSTANCE", otherInstance);
    other.setProcessEnvironment(environment);
    other.start(ORVANE_BINARY, {});
    QByteArray otherOutput;
    EXPECT_TRUE(waitForOutput(other, otherOutput, "Event tap started successfully")) << otherOutput.toStdString();
    other.terminate();
    ASSERT_TRUE(other.waitForFinished(60000));

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
    EXPECT_FALSE(QSettings(settingsOf(instance), QSettings::IniFormat).value("Orvane.CapsLockHIDRemapped").toBool());
    EXPECT_FALSE(QFile::exists(config.filePath("user.com/Orvane.conf")));  // the user's own settings file
}
