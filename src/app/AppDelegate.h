// The application's delegate: start-up and quit order, permission flow, windows and the status item.
#pragma once

#include <QObject>

namespace orvane {

class AppDelegate : public QObject {
    Q_OBJECT
public:
    // The running application's delegate, or null where there is none (tests of single views):
    // callers then do nothing.
    static AppDelegate* current();

    // Shows the configuration window, creating it on first use.
    Q_INVOKABLE virtual void openConfiguration() = 0;
    // Shows the key event debugger window, creating it on first use.
    Q_INVOKABLE virtual void openDebug() = 0;
    // Adds or removes the status item to match the "Orvane.ShowMenuIcon" setting.
    Q_INVOKABLE virtual void updateMenuIconVisibility() = 0;
    // True unless the setting says false; a fresh installation shows the icon.
    virtual bool showMenuIcon() const = 0;

protected:
    using QObject::QObject;
    static void setCurrent(AppDelegate* delegate);
};

}  // namespace orvane
