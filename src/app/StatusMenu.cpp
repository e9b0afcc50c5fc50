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

}  // namespace

QString interceptionStatusText(bool isRunning, std::size_t enabledMappings) {
    if (!isRunning) return QStringLiteral("Inactive");
    return QStringLiteral("Active (%1 mapping%2)").arg(enabledMappings).arg(enabledMappings == 1 ? "" : "s");
}

QString statusIconName(bool isRunning) { return isRunning ? QStringLiteral("keyboard.fill") : QStringLiteral("keyboard"); }

std::vector<StatusMenuItem> buildStatusMenu(bool isRunning, std::size_t enabledMappings, const StatusMenuActions& actions) {
    std::vector<StatusMenuItem> menu;
    StatusMenuItem interception;
    interception.title = interceptionStatusText(isRunning, enabledMappings);
    interception.dot = isRunning ? QStringLiteral("\u25CF") : QStringLiteral("\u25CB");
    interception.dotColor = isRunning ? QColor::fromRgbF(0.2f, 0.7f, 0.2f, 1.0f)
                                      : QGuiApplication::palette().color(QPalette::Disabled, QPalette::WindowText);
    interception.trigger = actions.toggleInterception;
    menu.push_back(interception);

    menu.push_back(separator());

    StatusMenuItem settings;
    settings.title = QStringLiteral("Settings...");
    settings.shortcut = QKeySequence(Qt::CTRL | Qt::Key_Comma);
    settings.iconName = QStringLiteral("gearshape");
    settings.iconDescription = QStringLiteral("Settings");
    settings.trigger = actions.openConfiguration;
    menu.push_back(settings);

    StatusMenuItem debugger;
    debugger.title = QStringLiteral("Key Event Debugger...");
    debugger.shortcut = QKeySequence(Qt::CTRL | Qt::Key_D);
    debugger.iconName = QStringLiteral("ant");
    debugger.iconDescription = QStringLiteral("Debugger");
    debugger.trigger = actions.openDebug;
    menu.push_back(debugger);

    menu.push_back(separator());

    StatusMenuItem quit;
    quit.title = QStringLiteral("Quit");
    quit.shortcut = QKeySequence(Qt::CTRL | Qt::Key_Q);
    quit.trigger = actions.quit;
    menu.push_back(quit);
    return menu;
}

}  // namespace orvane
