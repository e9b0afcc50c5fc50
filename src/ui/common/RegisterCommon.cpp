#include "ui/UiTypes.h"

#include "interception/EventTapManager.h"
#include "ui/common/PopoverWindow.h"

#include <QQmlEngine>
#include <QUrl>

namespace orvane::ui {

void registerCommonTypes() {
    qmlRegisterSingletonType(QUrl(QStringLiteral("qrc:/qml/Theme.qml")), "Orvane", 1, 0, "Theme");
    qmlRegisterType<PopoverWindow>("Orvane", 1, 0, "PopoverWindow");
    // The process-wide tap manager: views read isRunning and call start()/stop().
    qmlRegisterSingletonType<EventTapManager>("Orvane", 1, 0, "TapManager", [](QQmlEngine*, QJSEngine*) -> QObject* {
        EventTapManager* manager = &EventTapManager::shared();
        QQmlEngine::setObjectOwnership(manager, QQmlEngine::CppOwnership);
        return manager;
    });
}

}  // namespace orvane::ui
