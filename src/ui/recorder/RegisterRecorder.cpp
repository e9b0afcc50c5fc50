#include "ui/UiTypes.h"

#include "ui/recorder/KeyGridModel.h"
#include "ui/recorder/KeyPickerModel.h"
#include "ui/recorder/KeyRecorderField.h"

#include <QQmlEngine>

namespace orvane::ui {

void registerRecorderTypes() {
    // Fields belong to the view that edits a mapping; it hands them to KeyRecorderView.
    qmlRegisterUncreatableType<KeyRecorderField>("Orvane", 1, 0, "KeyRecorderField",
                                                 QStringLiteral("A recorder field is made by the view that owns it"));
    qmlRegisterUncreatableType<KeyGridModel>("Orvane", 1, 0, "KeyGridModel", QStringLiteral("Read a picker's keys"));
    qmlRegisterType<KeyPickerModel>("Orvane", 1, 0, "KeyPickerModel");
}

}  // namespace orvane::ui
