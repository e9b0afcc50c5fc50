// The delegate over the simulated platform: start-up, status item and menu, windows, permission, handover and quitting.
#include "DelegateUnderTest.h"
#include "Mappings.h"
#include "SimWorld.h"
#include "interception/KeyRecordingSession.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <QGuiApplication>
#include <QQuickView>
#include <QScreen>
#include <QTest>

using namespace orvane;
using namespace orvane::testing;

namespace {

struct AppDelegateTest : ::testing::Test, SimWorld {
    std::unique_ptr<DelegateUnderTest> app = std::make_unique<DelegateUnderTest>(*defaults, store, manager, accessibility);

    AppDelegate& delegate() { return app->delegate; }
    void launch() { delegate().applicationDidFinishLaunching(), settle(); }
    FakeStatusBar::Item& item() { return app->statusBar.current ? *app->statusBar.current : throw std::runtime_error("no item"); }
    // Triggers the status menu's first item, "Active" or "Inactive".
    void toggleFromTheMenu() { item().menu[0].trigger(), settle(); }
    long clearsRun() const {
        return std::ranges::count_if(tool.calls(), [](const QStringList& call) { return call.last() == HIDUtil::clearText(); });
    }
};

}  // namespace

TEST_F(AppDelegateTest, trustedLaunchStartsTheTapChecksForUpdatesAndTheMenuFollowsListAndTap) {
    launch();
    EXPECT_TRUE(manager.isRunning());
    EXPECT_EQ(item().iconName, "keyboard.fill");
    std::vector<QString> titles;
    for (const auto& entry : item().menu) titles.push_back(entry.kind == StatusMenuItem::Kind::separator ? "-" : entry.title);
    EXPECT_EQ(titles, (std::vector<QString>{"Active (0 mappings)", "-", "Settings...", "Key Event Debugger...", "-", "Quit"}));
    EXPECT_EQ(defaults->doubleValue(UpdateChecker::lastCheckKey), DelegateUnderTest::now);
    EXPECT_TRUE(app->alerts.shown.empty() && accessibility.prompts() == 0 && !delegate().configWindow());
    const QColor runningDot = item().menu[0].dotColor;  // green; greyed once stopped (its shape: the tray item's tests)
    EXPECT_TRUE(std::abs(runningDot.hslHue() - 120) < 30 && runningDot.hslSaturation() > 128) << runningDot.name().toStdString();
    // Only enabled mappings count (one mapping: the toggle's test); the menu is rebuilt as it opens.
    store.setMappings({mapping(KeyCode::a, TargetAction::block()), mapping(KeyCode::b, TargetAction::block(), false),
                       mapping(KeyCode::c, TargetAction::block())});
    item().menuWillOpen();
    EXPECT_EQ(item().menu[0].title, "Active (2 mappings)");
    // Stopping elsewhere (the list window's switch) reaches icon and menu through the subscription.
    manager.stop(), settle();
    EXPECT_EQ(item().iconName, "keyboard");
    EXPECT_EQ(item().menu[0].title, "Inactive");
    EXPECT_EQ(item().menu[0].dotColor, QGuiApplication::palette().color(QPalette::Disabled, QPalette::WindowText));
}

TEST_F(AppDelegateTest, untrustedLaunchAsksForPermissionAndStaysInactive) {
    accessibility.setTrusted(false), app->alerts.answer = AlertPresenter::firstButtonResponse;
    launch();
    EXPECT_TRUE(!manager.isRunning() && accessibility.prompts() == 1);
    ASSERT_EQ(app->alerts.shown.size(), 1u);
    EXPECT_EQ(summary(app->alerts.shown[0]), "warning: Accessibility Permission Required [Open System Settings|Later]");
    EXPECT_EQ(app->urls.opened,
              std::vector<QUrl>{QUrl("x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility")});
    EXPECT_EQ(item().menu[0].title, "Inactive");  // the icon: see the stopped tap in the trusted launch
    EXPECT_EQ(defaults->doubleValue(UpdateChecker::lastCheckKey), DelegateUnderTest::now);  // the check still runs
}

TEST_F(AppDelegateTest, theFirstItemTogglesInterceptionAndAsksForPermissionWithoutIt) {
    store.setMappings({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    launch();
    toggleFromTheMenu();  // that stopping restores Caps Lock: the tap manager's tests
    EXPECT_FALSE(manager.isRunning());
    toggleFromTheMenu();
    EXPECT_TRUE(manager.isRunning());
    EXPECT_EQ(item().menu[0].title, "Active (1 mapping)");

    toggleFromTheMenu();
    accessibility.setTrusted(false);
    toggleFromTheMenu();
    EXPECT_TRUE(!manager.isRunning() && accessibility.prompts() == 1);  // the alert: see the untrusted launch
}

TEST_F(AppDelegateTest, theItemFollowsTheShowMenuIconSetting) {
    launch();
    defaults->setBool(AppDelegate::showMenuIconKey, false), settle();
    EXPECT_EQ(app->statusBar.current, nullptr);
    defaults->setBool(AppDelegate::showMenuIconKey, true), settle();
    ASSERT_EQ(app->statusBar.created, 2);
    EXPECT_EQ(item().iconName, "keyboard.fill");
    EXPECT_EQ(item().menu[0].title, "Active (0 mappings)");

    // Hidden at launch: no item at all.
    app.reset();
    app = std::make_unique<DelegateUnderTest>(*defaults, store, manager, accessibility);
    defaults->setBool(AppDelegate::showMenuIconKey, false);
    launch();
    EXPECT_EQ(app->statusBar.created, 0);
}

// The channel's own tests carry messages over the socket; the smoke test runs the whole handover.
TEST_F(AppDelegateTest, windowsOpenOnALaterLaunchsMessageAreCreatedOnceAndKeepTheirFrames) {
    launch();
    qputenv("ORVANE_INSTANCE", "x");  // a private instance has its own message
    EXPECT_EQ(AppDelegate::openConfigurationMessage(), "com.user.Orvane-x.OpenConfig");
    qunsetenv("ORVANE_INSTANCE");
    // A later launch's message opens the configuration window; other messages are ignored.
    emit app->channel.messageReceived("com.user.Orvane.Other"), settle();
    EXPECT_FALSE(delegate().configWindow());
    emit app->channel.messageReceived("com.user.Orvane.OpenConfig"), settle();
    HostedWindow* config = delegate().configWindow();
    ASSERT_TRUE(config);
    EXPECT_EQ(config->view().title(), "Orvane");
    config->view().close(), settle();
    EXPECT_FALSE(config->isVisible());
    delegate().openConfiguration();
    EXPECT_TRUE(delegate().configWindow() == config && config->isVisible());
    EXPECT_EQ(app->activations, 2);  // the application comes to the front with each opening
    delegate().openDebug();
    ASSERT_TRUE(delegate().debugWindow());
    EXPECT_EQ(delegate().debugWindow()->view().title(), "Key Event Debugger");

    // The next run opens the window with the size it was closed with, on a screen even when its screen is gone.
    for (const QRect closedIn : {QRect(40, 50, 620, 480), QRect(-3000, 2500, 620, 480)}) {
        delegate().configWindow()->view().setGeometry(closedIn);
        delegate().closeWindows();
        app.reset(), app = std::make_unique<DelegateUnderTest>(*defaults, store, manager, accessibility);
        delegate().openConfiguration();
        const QRect frame = delegate().configWindow()->view().geometry();
        EXPECT_EQ(frame.size(), closedIn.size());
        EXPECT_TRUE(QGuiApplication::primaryScreen()->availableGeometry().contains(frame)) << closedIn.x();
    }
}

TEST_F(AppDelegateTest, reopenOpensTheConfigurationUnlessWindowsShowAndTheIconIsThere) {
    launch();
    // Visible windows, the icon shown, and whether the configuration opens.
    const std::tuple<bool, bool, bool> cases[] = {
        {true, true, false}, {true, false, true}, {false, true, true}, {false, false, true}};
    for (const auto& [visibleWindows, showIcon, opens] : cases) {
        delegate().closeWindows();
        defaults->setBool(AppDelegate::showMenuIconKey, showIcon);
        EXPECT_TRUE(delegate().applicationShouldHandleReopen(visibleWindows));
        EXPECT_EQ(delegate().configWindow() != nullptr, opens) << visibleWindows << showIcon;
    }
}

TEST_F(AppDelegateTest, theMenusShortcutsActInOurWindowsWithOrWithoutTheItem) {
    defaults->setBool(AppDelegate::showMenuIconKey, false);
    launch();
    delegate().openDebug();
    QTest::keyClick(&delegate().debugWindow()->view(), Qt::Key_Comma, Qt::ControlModifier), settle();
    ASSERT_NE(delegate().configWindow(), nullptr);
    QTest::keyClick(&delegate().configWindow()->view(), Qt::Key_Q, Qt::ControlModifier), settle();
    EXPECT_EQ(app->quitRequests, 1);
}

TEST_F(AppDelegateTest, quittingStopsTheTapAndRestoresCapsLockEvenWhenStopped) {
    launch();
    const long before = clearsRun();
    delegate().applicationWillTerminate();
    EXPECT_FALSE(manager.isRunning());
    EXPECT_EQ(clearsRun(), before + 2);  // once by stopping, once more on the way out
    delegate().applicationWillTerminate();
    EXPECT_EQ(clearsRun(), before + 3);
}

TEST_F(AppDelegateTest, aRecordingThatEndsAfterQuitDoesNotStartInterceptionAgain) {
    launch();
    KeyRecordingSession recording(events, manager);
    recording.startRecording();  // pauses the running tap
    delegate().applicationWillTerminate();
    recording.stopRecording();  // its field goes with the windows, after the final clear
    EXPECT_FALSE(manager.isRunning());
}

TEST_F(AppDelegateTest, secureInputIsADisabledLineUnderTheStateOnlyWhileInterceptionRuns) {
    app->secureInput = true;
    launch();
    ASSERT_EQ(item().menu[1].title, "Secure input is on \u2014 keys pass unchanged");
    EXPECT_FALSE(item().menu[1].isEnabled);
    app->secureInput = false;  // seen at the next poll
    EXPECT_TRUE(QTest::qWaitFor([&] { return item().menu[1].kind == StatusMenuItem::Kind::separator; }, 10000));
    app->secureInput = true;
    toggleFromTheMenu();  // stopped: keys pass anyway
    EXPECT_EQ(item().menu[1].kind, StatusMenuItem::Kind::separator);
}

TEST_F(AppDelegateTest, aResetHIDLayerGetsCapsLockBackOnlyWhileInterceptionRuns) {
    store.setMappings({mapping(KeyCode::capsLock, TargetAction::key(KeyCode::escape))});
    launch();
    const auto before = tool.calls().size();
    delegate().hidLayerWasReset(), settle();
    ASSERT_EQ(tool.calls().size(), before + 1);
    EXPECT_NE(tool.calls().back().last(), HIDUtil::clearText());
    toggleFromTheMenu();
    const auto stopped = tool.calls().size();
    delegate().hidLayerWasReset(), settle();
    EXPECT_EQ(tool.calls().size(), stopped);
}
