// The real delegate, not launched, over the shell's fakes and a given store and tap manager.
#pragma once

#include "AppFakes.h"
#include "app/AppDelegate.h"
#include "app/UpdateChecker.h"
#include "platform/sim/SimAccessibility.h"
#include "ui/UiEngine.h"

namespace orvane::testing {

struct DelegateUnderTest {
    static constexpr double now = 1'800'000'000;

    // Nothing listens on port 1: an update check fails at once, silently.
    DelegateUnderTest(UserDefaults& defaults, MappingStore& store, EventTapManager& manager, SimAccessibility& accessibility)
        : updates(defaults, nullptr, [] { return now; }, QUrl("http://127.0.0.1:1/version.json"), "1.0", "1", alerts, urls),
          windows(defaults, [](QQmlEngine& engine) { ui::prepareEngine(engine); }),
          delegate(AppServices{defaults, store, manager, updates, accessibility, alerts, urls, statusBar, channel, windows,
                               [this] { ++quitRequests; }, [this] { ++activations; }, [this] { return secureInput; }}) {}
    ~DelegateUnderTest() { delegate.closeWindows(); }

    ScriptedAlertPresenter alerts;
    RecordingUrlOpener urls;
    UpdateChecker updates;
    FakeStatusBar statusBar;
    LoneInstanceChannel channel;
    WindowHost windows;
    int quitRequests = 0, activations = 0;
    bool secureInput = false;  // the platform's secure input state
    AppDelegate delegate;
};

}  // namespace orvane::testing
