#include "app/StatusMenu.h"

#include <QGuiApplication>
#include <QPalette>

namespace orvane {
namespace {

StatusMenuItem separator() {
    StatusMenuItem item;
    item.kind = StatusMenuItem::Kind::separator;
    return item;
}

StatusMenuItem actionItem(const QString& title, const QKeySequence& shortcut, const QString& iconName, const QString& iconDescription,
                          const std::function<void()>& trigger) {
    StatusMenuItem item;
    item.title = title;
    item.shortcut = shortcut;
    item.iconName = iconName;
    item.iconDescription = iconDescription;
    item.trigger = trigger;
    return item;
}

}  // namespace

QString interceptionStatusText(bool isRunning, std::size_t enabledMappings) {
    if (!isRunning) return QStringLiteral("Inactive");
    return QStringLiteral("Active (%1 mapping%2)").arg(enabledMappings).arg(enabledMappings == 1 ? "" : "s");
}

QString statusIconName(bool isRunning) { return isRunning ? QStringLiteral("keyboard.fill") : QStringLiteral("keyboard"); }

std::vector<StatusMenuItem> buildStatusMenu(bool isRunning, std::size_t enabledMappings, bool secureInputOn,
                                            const StatusMenuActions& actions) {
    std::vector<StatusMenuItem> menu;
    StatusMenuItem interception;
    interception.title = interceptionStatusText(isRunning, enabledMappings);
    interception.dot = isRunning ? QStringLiteral("\u25CF") : QStringLiteral("\u25CB");
    interception.dotColor = isRunning ? QColor::fromRgbF(0.2f, 0.7f, 0.2f, 1.0f)
                                      : QGuiApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
    interception.trigger = actions.toggleInterception;
    menu.push_back(interception);
    if (isRunning && secureInputOn) {
        StatusMenuItem secureInput;
        secureInput.title = secureInputText;
        secureInput.isEnabled = false;
        menu.push_back(secureInput);
    }

    menu.push_back(separator());

    // Qt::CTRL is the Command key on macOS: the menu shows \u2318, \u2318D and \u2318Q there, Ctrl+… elsewhere.
    menu.push_back(actionItem(QStringLiteral("Settings..."), QKeySequence(Qt::CTRL | Qt::Key_Comma), QStringLiteral("gearshape"),
                              QStringLiteral("Settings"), actions.openConfiguration));
    menu.push_back(actionItem(QStringLiteral("Key Event Debugger..."), QKeySequence(Qt::CTRL | Qt::Key_D), QStringLiteral("ant"),
                              QStringLiteral("Debugger"), actions.openDebug));
    menu.push_back(separator());
    menu.push_back(actionItem(QStringLiteral("Quit"), QKeySequence(Qt::CTRL | Qt::Key_Q), QString(), QString(), actions.quit));
    return menu;
}

}  // namespace orvane
