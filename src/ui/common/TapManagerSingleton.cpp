#include "ui/common/TapManagerSingleton.h"

#include <QQmlEngine>

namespace orvane::ui {

EventTapManager* TapManagerSingleton::create(QQmlEngine*, QJSEngine*) {
    EventTapManager* manager = &EventTapManager::shared();
    QQmlEngine::setObjectOwnership(manager, QQmlEngine::CppOwnership);
    return manager;
}

}  // namespace orvane::ui
