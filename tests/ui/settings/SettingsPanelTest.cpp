// The settings panel over a simulated login item and the real delegate (not launched) over fakes.
#include "DelegateUnderTest.h"
#include "PrintedLines.h"
#include "UiHarness.h"
#include "platform/sim/SimLoginItem.h"
#include "ui/settings/AppVersion.h"

#include <gtest/gtest.h>

using namespace orvane;
using namespace orvane::testing;

namespace {

// Runs a function when the panel asks to be dismissed.
class DismissalProbe : public QObject {
    Q_OBJECT
public:
    std::function<void()> onDismiss;
public slots:
    void dismissed() { onDismiss(); }
};

struct SettingsPanelTest : ::testing::Test {
    UiHarness ui;  // it installs a simulated login item
    SimLoginItem* loginItem = dynamic_cast<SimLoginItem*>(&LoginItem::shared());
    PrintedLines lines;

    void SetUp() override { ASSERT_TRUE(loginItem); }
    QQuickItem* showPanel() {
        QQuickView* view = ui.show(QStringLiteral("SettingsPanel.qml"), QSize(250, 330));
        return view ? view->rootObject() : nullptr;
    }
    bool isChecked(const char* objectName) { return ui.read(objectName, "checked").toBool(); }
};

}  // namespace

TEST_F(SettingsPanelTest, launchAtLoginMirrorsTheSystemAtEachOpeningAndChangesItOrPrintsTheRefusal) {
    loginItem->setStatus(LoginItem::Status::enabled);  // registered outside the application
    QQuickItem* panel = showPanel();
    ASSERT_TRUE(panel);
    EXPECT_TRUE(isChecked("launchAtLoginCheckBox") && isChecked("showMenuIconCheckBox"));  // no stored setting: the icon shows
    EXPECT_EQ(ui.find("versionLabel")->property("text").toString(), QStringLiteral("Version ") + applicationVersionString());
    ui.screenshot(QStringLiteral("settings-panel"));

    ui.click(ui.find("launchAtLoginCheckBox"));
    EXPECT_EQ(loginItem->status(), LoginItem::Status::notRegistered);

    loginItem->setStatus(LoginItem::Status::enabled);
    panel->setVisible(false);
    panel->setVisible(true), ui.settle();
    EXPECT_TRUE(isChecked("launchAtLoginCheckBox") && lines.empty());

    loginItem->setFailure(QStringLiteral("Operation not permitted"));
    ui.click(ui.find("launchAtLoginCheckBox"));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(), "Failed to update launch at login: Operation not permitted");
    EXPECT_TRUE(isChecked("launchAtLoginCheckBox"));  // the system's state
    EXPECT_TRUE(ui.shown("launchAtLoginError"));
    EXPECT_EQ(ui.read("launchAtLoginError", "text"), "Launch at login could not be changed: Operation not permitted");
    ui.screenshot(QStringLiteral("settings-launch-at-login-failed"));
    panel->setVisible(false);
    panel->setVisible(true), ui.settle();
    EXPECT_FALSE(ui.shown("launchAtLoginError"));
}

// The status item follows the stored setting: see the delegate's tests.
TEST_F(SettingsPanelTest, showMenuIconIsStoredAtOnceAndNamedInTheDesktopsWords) {
    simulateDesktopWords(DesktopWords::linuxDesktop());
    ASSERT_TRUE(showPanel());
    EXPECT_EQ(ui.read("showMenuIconCheckBox", "text"), "Show tray icon");
    simulateDesktopWords(DesktopWords::mac());
    ui.click(ui.find("showMenuIconCheckBox"));
    EXPECT_FALSE(ui.defaults().boolValue(AppDelegate::showMenuIconKey, true));
    ui.click(ui.find("showMenuIconCheckBox"));
    EXPECT_TRUE(ui.defaults().boolValue(AppDelegate::showMenuIconKey, false));
}

TEST_F(SettingsPanelTest, openingTheDebuggerClosesThePanelFirst) {
    SimAccessibility accessibility;
    DelegateUnderTest app(ui.defaults(), ui.store(), ui.manager(), accessibility);
    QQuickItem* panel = showPanel();
    ASSERT_TRUE(panel);
    std::vector<bool> debuggerShownAtDismissal;
    DismissalProbe probe;
    probe.onDismiss = [&] { debuggerShownAtDismissal.push_back(app.delegate.debugWindow() != nullptr); };
    QObject::connect(panel, SIGNAL(dismissRequested()), &probe, SLOT(dismissed()));

    ui.click(ui.find("openDebuggerButton"));

    EXPECT_EQ(debuggerShownAtDismissal, std::vector<bool>{false});
    EXPECT_TRUE(app.delegate.debugWindow());
}

TEST(AppVersion, namesShortVersionAndBuildWithTheirFallbacks) {
    EXPECT_EQ(versionString("2.3", "41"), QStringLiteral("2.3 (41)"));
    EXPECT_EQ(versionString("", ""), QStringLiteral("1.0 (1)"));
}

#include "SettingsPanelTest.moc"
