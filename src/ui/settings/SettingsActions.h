// What the views ask of the application: the debugger window, the status item, the permission's instructions.
#pragma once

namespace orvane {

// Implemented by the application, which hands its own to the views while it runs. Main thread only.
class SettingsActions {
public:
    virtual ~SettingsActions() = default;

    // The running application's, or null where there is none (tests of single views): the panel
    // then stores its settings and does nothing more.
    static SettingsActions* current() { return current_; }
    static void setCurrent(SettingsActions* actions) { current_ = actions; }

    // Shows the key event debugger window.
    virtual void openDebug() = 0;
    // Adds or removes the status item to match the stored setting.
    virtual void updateMenuIconVisibility() = 0;
    // Shows how to give Orvane the permission to read the keyboard (the permission alert).
    virtual void showPermissionHelp() = 0;

private:
    static inline SettingsActions* current_ = nullptr;
};

}  // namespace orvane
