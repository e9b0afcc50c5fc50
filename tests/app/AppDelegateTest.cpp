// The delegate over the simulated platform: start-up order, the status item and menu, windows,
// permission flow, the handover between launches and the quit order.
#include "AppFakes.h"
#include "FakeHidutil.h"
#include "app/AppDelegate.h"
#include "app/UpdateChecker.h"
#include "interception/EventTapManager.h"
#include "platform/Diagnostics.h"
#include "platform/linux/LocalSocketInstanceChannel.h"
#include "platform/sim/SimEventSystem.h"
#include "store/MappingStore.h"
#include "ui/UiTypes.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QQuickView>
#include <QTemporaryDir>
#include <QUuid>

using namespace orvane;
using namespace orvane::testing;

namespace {

constexpr double now = 1'800'000'000;

QString uniqueChannelName() { return QStringLiteral("orvane-test-") + QUuid::createUuid().toString(QUuid::Id128); }

class AppDelegateTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    FakeHidutil tool;
    std::vector<std::string> lines;
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    SimAccessibility accessibility;
    SimEventSystem events{accessibility};
    std::unique_ptr<MappingStore> store;
    std::unique_ptr<EventTapManager> manager;
    ScriptedAlertPresenter alerts;
    RecordingUrlOpener urls;
    // Nothing listens on port 1: a check fails at once, silently.
    std::unique_ptr<UpdateChecker> updates;
    FakeStatusBar statusBar;
    const QString channelName = uniqueChannelName();
    LocalSocketInstanceChannel channel{channelName};
    std::unique_ptr<WindowHost> windows;
    int quitRequests = 0;
    std::unique_ptr<AppDelegate> delegate;

    void SetUp() override {
        diagnostics::redirectTo(&lines);
        store = std::make_unique<MappingStore>(*defaults, HIDUtil(tool.path()));
        manager = std::make_unique<EventTapManager>(events, *store);
        updates = std::make_unique<UpdateChecker>(*defaults, nullptr, [] { return now; }, QUrl("http://127.0.0.1:1/version.json"),
                                                  "1.0", "1", alerts, urls);
        windows = std::make_unique<WindowHost>(*defaults, [](QQmlEngine& engine) { ui::prepareEngine(engine); });
        delegate = std::make_unique<AppDelegate>(AppServices{*defaults, *store, *manager, *updates, accessibility, alerts, urls,
                                                             statusBar, channel, *windows, [this] { ++quitRequests; }});
        settle();
    }
    void TearDown() override {
        delegate.reset();
        windows.reset();
        manager.reset();
        store.reset();
        diagnostics::redirectTo(nullptr);
    }
    void settle() {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            store->waitForCapsLockDecisions();
        }
    }
    void launch() {
        delegate->applicationDidFinishLaunching();
        settle();
    }
    RecordedStatusItem& item() {
        RecordedStatusItem* current = statusBar.current();
        if (!current) throw std::runtime_error("no status item");
        return *current;
    }
    std::vector<QString> menuTitles() {
        std::vector<QString> titles;
        for (const auto& entry : item().menu) titles.push_back(entry.kind == StatusMenuItem::Kind::separator ? "-" : entry.title);
        return titles;
    }
    int clearsRun() const {
        int clears = 0;
        for (const auto& call : tool.calls()) clears += call.last() == HIDUtil::clearText();
        return clears;
    }
};

KeyMapping mapping(KeyCode from, bool enabled) {
    return {Uuid::random(), SourceKey::regular(from), TargetAction::key(KeyCode::b), enabled};
}

}  // namespace

TEST_F(AppDelegateTest, trustedLaunchShowsTheItemStartsTheTapAndChecksForUpdates) {
    launch();
    EXPECT_TRUE(manager->isRunning());
    EXPECT_EQ(item().iconName, "keyboard.fill");
    EXPECT_EQ(item().iconDescription, "Orvane");
    EXPECT_EQ(menuTitles(), (std::vector<QString>{"Active (0 mappings)", "-", "Settings...", "Key Event Debugger...", "-", "Quit"}));
    EXPECT_EQ(defaults->doubleValue(UpdateChecker::lastCheckKey), now);
    EXPECT_TRUE(alerts.shown.empty());
    EXPECT_EQ(accessibility.prompts(), 0);
    EXPECT_FALSE(delegate->configWindow());
}

TEST_F(AppDelegateTest, untrustedLaunchAsksForPermissionAndStaysInactive) {
    accessibility.setTrusted(false);
    alerts.answer = AlertPresenter::firstButtonResponse;
    launch();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(accessibility.prompts(), 1);
    ASSERT_EQ(alerts.shown.size(), 1u);
    const auto& alert = alerts.shown[0];
    EXPECT_EQ(alert.style, AlertPresenter::Alert::Style::warning);
    EXPECT_EQ(alert.message, "Accessibility Permission Required");
    EXPECT_EQ(alert.informativeText,
              "Orvane needs Accessibility permission to intercept and remap keyboard events.\n\nPlease grant permission in "
              "System Settings > Privacy & Security > Accessibility, then restart the app.");
    EXPECT_EQ(alert.buttons, (QStringList{"Open System Settings", "Later"}));
    ASSERT_EQ(urls.opened.size(), 1u);
    EXPECT_EQ(urls.opened[0].toString(), "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
    EXPECT_EQ(item().iconName, "keyboard");
    EXPECT_EQ(item().menu[0].title, "Inactive");
    EXPECT_EQ(item().menu[0].dot, QString("\u25CB"));
    EXPECT_EQ(defaults->doubleValue(UpdateChecker::lastCheckKey), now);  // the check still runs
}

TEST_F(AppDelegateTest, menuCountsEnabledMappingsAndFollowsTheTap) {
    launch();
    const struct {
        std::vector<bool> enabled;
        const char* title;
    } cases[] = {{{}, "Active (0 mappings)"}, {{true, false, false}, "Active (1 mapping)"}, {{true, true, false}, "Active (2 mappings)"},
                 {{false, false}, "Active (0 mappings)"}};
    for (const auto& c : cases) {
        std::vector<KeyMapping> list;
        for (bool enabled : c.enabled) list.push_back(mapping(KeyCode::a, enabled));
        store->setMappings(list);
        item().menuWillOpen();  // the menu is rebuilt as it opens
        EXPECT_EQ(item().menu[0].title, c.title);
        EXPECT_EQ(item().menu[0].dot, QString("\u25CF"));
        EXPECT_EQ(item().menu[0].dotColor, QColor::fromRgbF(0.2f, 0.7f, 0.2f));
    }
    const auto& menu = item().menu;
    EXPECT_EQ(menu[2].shortcut, QKeySequence(Qt::CTRL | Qt::Key_Comma));
    EXPECT_EQ(menu[2].iconName, "gearshape");
    EXPECT_EQ(menu[2].iconDescription, "Settings");
    EXPECT_EQ(menu[3].shortcut, QKeySequence(Qt::CTRL | Qt::Key_D));
    EXPECT_EQ(menu[3].iconName, "ant");
    EXPECT_EQ(menu[3].iconDescription, "Debugger");
    EXPECT_EQ(menu[5].shortcut, QKeySequence(Qt::CTRL | Qt::Key_Q));
    EXPECT_TRUE(menu[5].iconName.isEmpty());
    menu[5].trigger();
    EXPECT_EQ(quitRequests, 1);

    // Stopping elsewhere (the list window's switch) reaches icon and menu through the subscription.
    manager->stop();
    settle();
    EXPECT_EQ(item().iconName, "keyboard");
    EXPECT_EQ(item().menu[0].title, "Inactive");
}

TEST_F(AppDelegateTest, theFirstItemTogglesInterception) {
    store->setMappings({{Uuid::random(), SourceKey::regular(KeyCode::capsLock), TargetAction::key(KeyCode::escape), true}});
    launch();
    const int clearsBefore = clearsRun();
    item().menu[0].trigger();
    settle();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(clearsRun(), clearsBefore + 1);  // Caps Lock restored
    EXPECT_EQ(item().menu[0].title, "Inactive");
    EXPECT_EQ(item().iconName, "keyboard");

    item().menu[0].trigger();
    settle();
    EXPECT_TRUE(manager->isRunning());
    EXPECT_EQ(item().menu[0].title, "Active (1 mapping)");

    // Without trust: the prompt and the alert, and the tap stays off.
    item().menu[0].trigger();
    settle();
    accessibility.setTrusted(false);
    item().menu[0].trigger();
    settle();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(accessibility.prompts(), 1);
    EXPECT_EQ(alerts.shown.size(), 1u);
    EXPECT_TRUE(urls.opened.empty());  // "Later"
}

TEST_F(AppDelegateTest, theItemFollowsTheShowMenuIconSetting) {
    launch();
    ASSERT_EQ(statusBar.items.size(), 1u);
    defaults->setBool(AppDelegate::showMenuIconKey, false);
    settle();
    EXPECT_EQ(statusBar.current(), nullptr);
    defaults->setBool(AppDelegate::showMenuIconKey, true);
    settle();
    ASSERT_EQ(statusBar.items.size(), 2u);
    EXPECT_EQ(item().iconName, "keyboard.fill");
    EXPECT_EQ(item().menu[0].title, "Active (0 mappings)");

    // Hidden at launch: no item at all.
    TearDown();
    statusBar.items.clear();
    SetUp();
    defaults->setBool(AppDelegate::showMenuIconKey, false);
    launch();
    EXPECT_TRUE(statusBar.items.empty());
}

TEST_F(AppDelegateTest, windowsAreCreatedOnceAndKept) {
    launch();
    delegate->openConfiguration();
    HostedWindow* config = delegate->configWindow();
    ASSERT_TRUE(config);
    EXPECT_EQ(config->view().title(), "Orvane");
    EXPECT_EQ(config->view().size(), QSize(500, 400));
    EXPECT_TRUE(config->isVisible());
    config->view().close();
    settle();
    EXPECT_FALSE(config->isVisible());
    delegate->openConfiguration();
    EXPECT_EQ(delegate->configWindow(), config);
    EXPECT_TRUE(config->isVisible());

    delegate->openDebug();
    ASSERT_TRUE(delegate->debugWindow());
    EXPECT_EQ(delegate->debugWindow()->view().title(), "Key Event Debugger");
    EXPECT_EQ(delegate->debugWindow()->view().size(), QSize(550, 500));

    // The frame is remembered under the autosave name and comes back in the next run.
    config->view().setGeometry(QRect(40, 50, 620, 480));
    delegate->closeWindows();
    auto nextRun = std::make_unique<AppDelegate>(AppServices{*defaults, *store, *manager, *updates, accessibility, alerts, urls,
                                                             statusBar, channel, *windows, [] {}});
    nextRun->openConfiguration();
    EXPECT_EQ(nextRun->configWindow()->view().geometry().size(), QSize(620, 480));
}

TEST_F(AppDelegateTest, reopenOpensTheConfigurationUnlessWindowsShowAndTheIconIsThere) {
    launch();
    const struct {
        bool visibleWindows, showIcon, opens;
    } cases[] = {{true, true, false}, {true, false, true}, {false, true, true}, {false, false, true}};
    for (const auto& c : cases) {
        delegate->closeWindows();
        defaults->setBool(AppDelegate::showMenuIconKey, c.showIcon);
        EXPECT_TRUE(delegate->applicationShouldHandleReopen(c.visibleWindows));
        EXPECT_EQ(delegate->configWindow() != nullptr, c.opens) << c.visibleWindows << c.showIcon;
    }
}

TEST_F(AppDelegateTest, aSecondLaunchHandsOverToTheRunningInstance) {
    ASSERT_TRUE(channel.listen());
    launch();
    LocalSocketInstanceChannel later(channelName);  // a later launch, by the same user
    EXPECT_TRUE(later.isAnotherInstanceRunning());
    EXPECT_TRUE(later.postOpenConfig());
    for (int i = 0; i < 200 && !delegate->configWindow(); ++i) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    ASSERT_TRUE(delegate->configWindow());
    EXPECT_TRUE(delegate->configWindow()->isVisible());
}

TEST_F(AppDelegateTest, quittingStopsTheTapAndRestoresCapsLockEvenWhenStopped) {
    launch();
    const int before = clearsRun();
    delegate->applicationWillTerminate();
    EXPECT_FALSE(manager->isRunning());
    EXPECT_EQ(clearsRun(), before + 2);  // once by stopping, once more on the way out
    delegate->applicationWillTerminate();
    EXPECT_EQ(clearsRun(), before + 3);
}
