// The process-wide tap manager as the QML singleton TapManager: views read isRunning and call start()/stop().
#pragma once

#include "interception/EventTapManager.h"

#include <QObject>
#include <QQmlEngine>

namespace orvane::ui {

// The interception layer knows nothing of QML; this foreign declaration gives its class the QML name.
struct TapManagerSingleton {
    Q_GADGET
    QML_FOREIGN(orvane::EventTapManager)
    QML_NAMED_ELEMENT(TapManager)
    QML_SINGLETON

public:
    // The shared instance (whatever EventTapManager::shared() is when an engine first asks), kept
    // in C++ ownership so that no engine deletes it.
    static EventTapManager* create(QQmlEngine* engine, QJSEngine* scriptEngine);
};

}  // namespace orvane::ui
