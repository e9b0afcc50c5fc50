#include "ui/UiTypes.h"

#include "ui/debugger/DebugEventText.h"
#include "ui/debugger/DebugViewModel.h"

#include <QQmlEngine>

namespace orvane::ui {

void registerDebuggerTypes() {
    // Each debugger view makes its own model; the model reaches the shared objects itself.
    qmlRegisterType<DebugViewModel>("Orvane", 1, 0, "DebugViewModel");
    qmlRegisterUncreatableMetaObject(debugtext::staticMetaObject, "Orvane", 1, 0, "DebugEventText",
                                     QStringLiteral("DebugEventText only holds the badge tones"));
}

}  // namespace orvane::ui
