// The status item's menu as data: what each item says, shows and does, built afresh for a tap state.
#pragma once

#include <QColor>
#include <QKeySequence>
#include <QString>

#include <functional>
#include <vector>

namespace orvane {

// "Inactive", or "Active (N mapping[s])" counting enabled mappings only.
QString interceptionStatusText(bool isRunning, std::size_t enabledMappings);

struct StatusMenuItem {
    enum class Kind { action, separator };
    Kind kind = Kind::action;
    QString title;
    // The first item's coloured dot ("●" running, "○" not) and its colour; empty elsewhere.
    QString dot;
    QColor dotColor;
    QKeySequence shortcut;
    QString iconName;          // one of our icons ("gearshape", "ant"); empty for none
    QString iconDescription;   // the icon's accessible description
    bool isEnabled = true;     // a disabled item is a line of information
    std::function<void()> trigger;
};

struct StatusMenuActions {
    std::function<void()> toggleInterception;
    std::function<void()> openConfiguration;
    std::function<void()> openDebug;
    std::function<void()> quit;
};

// While another application holds secure keyboard entry, taps see no keys: the line that says so.
inline const QString secureInputText = QStringLiteral("Secure input is on \u2014 keys pass unchanged");

// Interception item, separator, "Settings...", "Key Event Debugger...", separator, "Quit"; while
// interception runs under secure input, the disabled secureInputText line follows the first item.
std::vector<StatusMenuItem> buildStatusMenu(bool isRunning, std::size_t enabledMappings, bool secureInputOn,
                                            const StatusMenuActions& actions);

// The item's icon for a tap state: "keyboard.fill" while running, "keyboard" otherwise.
QString statusIconName(bool isRunning);

}  // namespace orvane
