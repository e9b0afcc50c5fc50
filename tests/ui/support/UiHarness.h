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

// The first item of that objectName at or under item (null for a null item).
QQuickItem* childNamed(QQuickItem* item, const QString& name);
// How many of the item's pixels, as its window draws them, lie within 60 of colour in each channel.
int pixelsLike(QQuickItem* item, const QColor& colour);

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

    // Loads <file> from the Orvane module's directory (ui::viewUrl) as the root of a window of that
    // size, shows it and waits until exposed. Fails the test (and returns null) when the QML does not load.
    QQuickView* show(const QString& file, QSize size);
    QQuickView* view() { return view_.get(); }
    // The first item of that objectName in the view, its popups and sheets, or a popover's window.
    QQuickItem* find(const QString& objectName) const;
    // That item's property (invalid when there is no such item), and whether it is found and visible
    // (a closed popup's contents are still found).
    QVariant read(const QString& objectName, const char* property) const;
    bool shown(const QString& objectName) const { return read(objectName, "visible").toBool(); }

    enum class Mouse { click, doubleClick, hover };
    // A left click (or the other action) at the item's centre.
    void click(QQuickItem* item, Mouse action = Mouse::click);
    // Typed into the window that has the keyboard focus (a popover while one is open).
    void key(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    // Lets deferred work, bindings and queued Caps Lock decisions settle, and draws a frame (layouts
    // and lists are polished when one is drawn).
    void settle();

    // Saves the main window with its open popovers over it, or only the window showing inWindowOf, as
    // <screenshot dir>/<name>.png and returns the picture.
    QImage screenshot(const QString& name, QQuickItem* inWindowOf = nullptr);

private:
    FakeHidutil tool_;
    QTemporaryDir dir_;
    std::unique_ptr<QQuickView> view_;
};

}  // namespace orvane::testing
