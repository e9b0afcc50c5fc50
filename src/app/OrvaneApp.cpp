#include "app/OrvaneApp.h"

#include "app/AppDelegate.h"
#include "app/DesktopUrlOpener.h"
#include "app/FirstFrameProbe.h"
#include "app/MessageBoxAlertPresenter.h"
#include "app/TrayStatusItem.h"
#include "app/UpdateChecker.h"
#include "interception/EventTapManager.h"
#include "platform/Diagnostics.h"
#include "platform/EventSystem.h"
#include "platform/PlatformServices.h"
#include "platform/PrivateInstance.h"
#include "store/MappingStore.h"
#include "ui/UiEngine.h"

#include <QApplication>
#include <QIcon>
#include <QQuickView>

namespace orvane {
namespace {

// How long a launch waits for an instance that has begun quitting to be gone: a quit waits for the
// HID tool at most once, up to its 10 s time limit, and a loaded machine may take as long again.
constexpr std::chrono::milliseconds quittingInstancePatience{30000};

}  // namespace

int runOrvaneApp(int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setOrganizationDomain(QStringLiteral("user.com"));
    // A private instance's name keeps its settings and per-application folders apart from the user's.
    QApplication::setApplicationName(forThisInstance(QStringLiteral("Orvane")));
    // A menu-bar app keeps running with every window closed.
    QApplication::setQuitOnLastWindowClosed(false);
    // Every window carries the icon; Wayland compositors take it from the desktop entry this names.
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/app/orvane.svg")));
    QApplication::setDesktopFileName(QStringLiteral("com.user.Orvane"));

    // Another instance runs: wake it, ask it to open its configuration window, and leave before
    // anything with effects (the store's Caps Lock decisions, its clear at quit, settings) exists.
    // Until then a logout or kill simply ends the process.
    auto channel = createInstanceChannel();
    using Claim = InstanceChannel::Claim;
    switch (channel->claimOrHandOver(AppDelegate::openConfigurationMessage(), quittingInstancePatience)) {
    case Claim::ours: break;
    case Claim::handedOver: return 0;
    case Claim::unusable: return 1;
    case Claim::noAnswer:
        diagnostics::printLine("Orvane: another Orvane of this user holds the instance but took no message for " +
                               std::to_string(quittingInstancePatience.count() / 1000) +
                               " s; quit it, or end its process, and launch Orvane again");
        return 1;
    }
    // From now on, a logout or kill quits in order (and so restores Caps Lock).
    installQuitRequestHandler([] { QApplication::quit(); });

    // The HID tool can be pointed elsewhere for tests; the application has no command line.
    if (const QString tool = qEnvironmentVariable("ORVANE_HIDUTIL"); !tool.isEmpty())
        MappingStore::installShared(std::make_unique<MappingStore>(UserDefaults::shared(), HIDUtil(tool)));

    // The update check's alerts and the delegate's take turns on one presenter.
    MessageBoxAlertPresenter& alerts = MessageBoxAlertPresenter::shared();
    DesktopUrlOpener urlOpener;
    TrayStatusBar statusBar(trayIconClickOpensMenu(), &trayPanelLightness);
    WindowHost windows(UserDefaults::shared(), [](QQmlEngine& engine) { ui::prepareEngine(engine); });
    AppDelegate delegate({UserDefaults::shared(), MappingStore::shared(), EventTapManager::shared(), UpdateChecker::shared(),
                          Accessibility::shared(), alerts, urlOpener, statusBar, *channel, windows,
                          [] { QApplication::quit(); }, &activateApplication, secureInputQuery()});

    delegate.applicationDidFinishLaunching();
    installReopenHandler([&delegate] { delegate.applicationShouldHandleReopen(delegate.hasVisibleWindows()); });
    installHidResetHandler([&delegate] { delegate.hidLayerWasReset(); });
    // Without a system tray the item cannot show: open the window so the app is never invisible.
    if (!statusBar.isAvailable()) delegate.openConfiguration();
    if (delegate.configWindow()) reportFirstFrameIfAsked(delegate.configWindow()->view());
    QObject::connect(&app, &QCoreApplication::aboutToQuit, &delegate, &AppDelegate::applicationWillTerminate);

    const int status = QApplication::exec();
    // Our windows go before the objects their views use.
    delegate.closeWindows();
    return status;
}

}  // namespace orvane
