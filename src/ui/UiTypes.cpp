#include "ui/UiTypes.h"

#include "ui/common/IconImageProvider.h"

#include <QQmlEngine>

namespace orvane::ui {

void registerTypes() {
    static bool registered = false;
    if (registered) return;
    registered = true;
    registerCommonTypes();
    registerMappingsTypes();
    registerRecorderTypes();
    registerSettingsTypes();
    registerDebuggerTypes();
}

void prepareEngine(QQmlEngine& engine) {
    registerTypes();
    engine.addImageProvider(QStringLiteral("icon"), new IconImageProvider);  // the engine takes ownership
}

}  // namespace orvane::ui
