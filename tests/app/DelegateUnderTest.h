// The real delegate, not launched, over the shell's fakes and a given store and tap manager.
#pragma once

#include "AppFakes.h"
#include "app/AppDelegate.h"
#include "app/UpdateChecker.h"
#include "platform/linux/LocalSocketInstanceChannel.h"
#include "platform/sim/SimAccessibility.h"
#include "ui/UiEngine.h"

#include <QUuid>

namespace orvane::testing {

struct DelegateUnderTest {
    static constexpr double now = 1'800'000'000;

    // Nothing listens on port 1: an update check fails at once, silently.
    DelegateUnderTest(UserDefaults& defaults, MappingStore& store, EventTapManager& manager, SimAccessibility& accessibility)
        : updates(defaults, nullptr, [] { return now; }, QUrl("http://127.0.0.1:1/version.json"), "1.0", "1", alerts, urls),
          windows(defaults, [](QQmlEngine& engine) { ui::prepareEngine(engine); }),
          delegate(AppServices{defaults, store, manager, updates, accessibility, alerts, urls, statusBar, channel, windows,
                               [this] { ++quitRequests; }}) {}
    ~DelegateUnderTest() { delegate.closeWindows(); }

    ScriptedAlertPresenter alerts;
    RecordingUrlOpener urls;
    UpdateChecker updates;
    FakeStatusBar statusBar;
    LocalSocketInstanceChannel channel{QStringLiteral("orvane-test-") + QUuid::createUuid().toString(QUuid::Id128)};
    WindowHost windows;
    int quitRequests = 0;
    AppDelegate delegate;
};

}  // namespace orvane::testing
