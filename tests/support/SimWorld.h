// An isolated world over the simulated platform: settings in a temporary file, a fake HID tool, a trusted
// simulated event system, the store and the tap manager (not started).
#pragma once

#include "FakeHidutil.h"
#include "interception/EventTapManager.h"
#include "platform/sim/SimEventSystem.h"
#include "store/MappingStore.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <memory>

namespace orvane::testing {

struct SimWorld {
    QTemporaryDir dir;
    FakeHidutil tool;
    SimAccessibility accessibility;
    SimEventSystem events{accessibility};
    std::unique_ptr<UserDefaults> defaults = UserDefaults::openFile(dir.filePath("settings.ini"));
    MappingStore store{*defaults, HIDUtil(tool.path())};
    EventTapManager manager{events, store};

    // Lets deferred work and queued Caps Lock decisions finish, a few rounds deep.
    void settle() {
        for (int round = 0; round < 3; ++round) {
            QCoreApplication::processEvents();
            store.waitForCapsLockDecisions();
        }
    }
};

}  // namespace orvane::testing
