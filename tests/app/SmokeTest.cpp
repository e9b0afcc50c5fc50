// The real binary as a private instance: start-up, an orderly quit on SIGTERM, SIGHUP under nohup, the
// single instance (launches at once, a launch during a slow quit), settings that are a FIFO.
#include "FakeHidutil.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

struct Smoke : ::testing::Test {
    QTemporaryDir config;
    orvane::testing::FakeHidutil tool;
    // Private instances of this run only: a running Orvane of the user's is left alone.
    const QString instance = QStringLiteral("smoke-%1").arg(QCoreApplication::applicationPid());
    QProcess process;  // the launch of the tests that make one
    QByteArray output;  // its standard output, as read so far

    QString settingsOf(const QString& name) const { return config.filePath("user.com/Orvane-" + name + ".conf"); }
    // A check done a moment ago: no update request.
    void prepare(const QString& name, bool capsLockRemapped = false) {
        QDir().mkpath(config.filePath("user.com"));
        QSettings settings(settingsOf(name), QSettings::IniFormat);
        settings.setValue("Orvane.LastUpdateCheck", QDateTime::currentSecsSinceEpoch());
        settings.setValue("Orvane.CapsLockHIDRemapped", capsLockRemapped);
    }
    void launch(QProcess& process, const QString& name, bool underNohup = false, const QString& runtimeFolder = {}) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!runtimeFolder.isEmpty()) environment.insert("XDG_RUNTIME_DIR", runtimeFolder);
        const std::pair<const char*, QString> variables[] = {{"QT_QPA_PLATFORM", "offscreen"}, {"QT_QUICK_BACKEND", "software"},
            {"XDG_CONFIG_HOME", config.path()}, {"ORVANE_HIDUTIL", tool.path()}, {"ORVANE_INSTANCE", name}};
        for (const auto& [variable, value] : variables) environment.insert(variable, value);
        process.setProcessEnvironment(environment);
        underNohup ? process.start(QStringLiteral("nohup"), {ORVANE_BINARY}) : process.start(ORVANE_BINARY, {});
    }
    // Reads standard output until the start-up line shows or the process ends.
    static bool startsUp(QProcess& process, QByteArray& output) {
        const QByteArray line = "Event tap started successfully";
        const auto started = [&] { return (output += process.readAllStandardOutput()).contains(line); };
        return QTest::qWaitFor([&] { return started() || process.state() == QProcess::NotRunning; }, 120000) && started();
    }
    static bool quitsInOrder(QProcess& process) {
        process.terminate();
        return process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
    }
};

TEST_F(Smoke, startsIgnoresSighupUnderNohupAndQuitsInOrderOnSigterm) {
    prepare(instance, true);  // a Caps Lock remapping left by an earlier run, which it clears in its settings
    launch(process, instance, /*underNohup=*/true);
    ASSERT_TRUE(startsUp(process, output)) << output.toStdString() << process.readAllStandardError().toStdString();
    ::kill(static_cast<pid_t>(process.processId()), SIGHUP);  // a closed terminal: nohup's promise holds
    EXPECT_FALSE(process.waitForFinished(1500));
    EXPECT_TRUE(quitsInOrder(process));
    output += process.readAllStandardOutput();
    EXPECT_TRUE(output.contains("Event tap stopped\n")) << output.toStdString();
    EXPECT_FALSE(QSettings(settingsOf(instance), QSettings::IniFormat).value("Orvane.CapsLockHIDRemapped").toBool());
    EXPECT_FALSE(QFile::exists(config.filePath("user.com/Orvane.conf")));  // the user's own settings file
}

// The launches that hand over end at once, having printed nothing: no start-up, no Caps Lock work.
TEST_F(Smoke, ofFiveLaunchesAtOnceOneRunsAndTheOthersHandOverToIt) {
    prepare(instance);
    for (int round = 0; round < 3; ++round) {
        QProcess launches[5];
        for (QProcess& one : launches) launch(one, instance);
        const auto ended = [&] { return std::count_if(launches, launches + 5, [](QProcess& p) { return p.state() == QProcess::NotRunning; }); };
        EXPECT_TRUE(QTest::qWaitFor([&] { return ended() >= 4; }, 60000));
        QTest::qWait(1000);
        ASSERT_EQ(ended(), 4) << "round " << round;
        for (QProcess& one : launches)
            EXPECT_TRUE(one.state() == QProcess::Running ? quitsInOrder(one)
                        : one.exitStatus() == QProcess::NormalExit && one.exitCode() == 0 && one.readAllStandardOutput().isEmpty());
    }
}

TEST_F(Smoke, aLaunchWhileTheInstanceQuitsSlowlyWaitsForItAndThenRuns) {
    prepare(instance);
    QProcess first, second;
    QByteArray firstOutput, secondOutput;
    launch(first, instance);
    ASSERT_TRUE(startsUp(first, firstOutput)) << firstOutput.toStdString();
    tool.setDelay("2");
    const auto callsBefore = tool.calls().size();
    first.terminate();
    ASSERT_TRUE(QTest::qWaitFor([&] { return tool.calls().size() > callsBefore; }, 30000));  // its quit is under way
    launch(second, instance);
    EXPECT_TRUE(startsUp(second, secondOutput)) << secondOutput.toStdString();
    EXPECT_TRUE(quitsInOrder(second));
}

TEST_F(Smoke, settingsThatAreAFifoAreUnreadableAndLeftAsTheyAre) {
    QDir().mkpath(config.filePath("user.com"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(settingsOf(instance)).constData(), 0600), 0);
    launch(process, instance);
    ASSERT_TRUE(startsUp(process, output)) << output.toStdString();  // not stuck opening it
    EXPECT_TRUE(quitsInOrder(process));
    EXPECT_TRUE(output.contains("UserDefaults: Cannot read " + QFile::encodeName(settingsOf(instance)) + ", starting without"));
    EXPECT_TRUE(QFileInfo(settingsOf(instance)).exists() && !QFileInfo(settingsOf(instance)).isFile());
}

TEST_F(Smoke, anInstanceNameTooLongForASocketIsRefusedAtOnceWithOneLine) {
    launch(process, QString(200, QLatin1Char('n')));
    ASSERT_TRUE(process.waitForFinished(60000));
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardOutput().contains("is too long for a socket"));
}

TEST_F(Smoke, aLaunchThatFindsTheInstanceHeldButNeverAnsweringGivesUpWithOneLine) {
    QTemporaryDir runtime;  // made the user's own and closed to others
    const QByteArray claim = QFile::encodeName(runtime.filePath("com.user.Orvane-" + instance + ".claim"));
    const int held = ::open(claim.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_TRUE(held >= 0 && ::flock(held, LOCK_EX) == 0);  // an instance that stopped taking messages
    launch(process, instance, false, runtime.path());
    ASSERT_TRUE(process.waitForFinished(120000));
    ::close(held);
    EXPECT_EQ(process.exitCode(), 1);
    EXPECT_TRUE(process.readAllStandardOutput().contains("took no message for 30 s; quit it, or end its process"));
}

// Standard output a pipe whose reader has gone, and SIGPIPE's default action: the lines fail, the
// quit still runs its clear.
TEST_F(Smoke, aClosedStandardOutputEndsNothingAndTheQuitStillClears) {
    prepare(instance, true);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    ::close(ends[0]);
    process.setChildProcessModifier([writer = ends[1]] {
        ::signal(SIGPIPE, SIG_DFL);
        ::dup2(writer, STDOUT_FILENO);
    });
    launch(process, instance);
    ::close(ends[1]);
    // The clear of the mapping left by an earlier run, then the start-up lines, all into the broken pipe.
    ASSERT_TRUE(QTest::qWaitFor([&] { return !tool.calls().empty() || process.state() == QProcess::NotRunning; }, 120000));
    QTest::qWait(3000);
    const auto callsBefore = tool.calls().size();
    EXPECT_TRUE(quitsInOrder(process)) << process.exitStatus() << " " << process.exitCode() << process.readAllStandardError().toStdString();
    EXPECT_GT(tool.calls().size(), callsBefore);
}
