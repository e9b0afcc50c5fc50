// Shows a real view over the simulated platform, an isolated store and a fake HID tool, for UI tests.
#pragma once

#include "FakeHidutil.h"
#include "interception/EventTapManager.h"
#include "platform/sim/SharedPlatform.h"
#include "store/MappingStore.h"

#include <QImage>
#include <QQuickItem>
#include <QQuickView>
#include <QTemporaryDir>

#include <memory>

namespace orvane::testing {

// Installs fresh shared objects (user defaults in a temporary file, store, tap manager) so that
// views created from QML find them; trusted simulated platform with its delivered events cleared.
class UiHarness {
public:
    UiHarness();
    ~UiHarness();

    UserDefaults& defaults() { return UserDefaults::shared(); }
    MappingStore& store() { return MappingStore::shared(); }
    EventTapManager& manager() { return EventTapManager::shared(); }
    SimEventSystem& events() { return simEventSystem(); }
    FakeHidutil& tool() { return tool_; }

    // Loads <file> from the Orvane module's directory (ui::viewUrl) as the root of a window of that
    // size, shows it and waits until exposed. Fails the test (and returns null) when the QML does not load.
    QQuickView* show(const QString& file, QSize size);
    QQuickView* view() { return view_.get(); }
    // The first item of that objectName under the root (also inside popups and sheets).
    QQuickItem* find(const QString& objectName) const;

    void click(QQuickItem* item, Qt::MouseButton button = Qt::LeftButton);
    void doubleClick(QQuickItem* item);
    void hover(QQuickItem* item);
    // Typed into the window that has the keyboard focus (a popover while one is open).
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    QWindow* keyWindow() const;
    // Lets deferred work, bindings and queued Caps Lock decisions settle.
    void settle();

    // Saves the main window as <screenshot dir>/<name>.png and returns the picture.
    QImage screenshot(const QString& name);
    // The same for the window that shows the item (a popover, say).
    QImage screenshotWindowOf(QQuickItem* item, const QString& name);

private:
    QImage screenshotOf(QQuickWindow& window, const QString& name);

    FakeHidutil tool_;
    QTemporaryDir dir_;
    std::unique_ptr<QQuickView> view_;
};

}  // namespace orvane::testing
