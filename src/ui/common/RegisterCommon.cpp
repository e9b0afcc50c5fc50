#include "ui/UiTypes.h"

#include <QQmlEngine>
#include <QUrl>

namespace orvane::ui {

void registerCommonTypes() {
    qmlRegisterSingletonType(QUrl(QStringLiteral("qrc:/qml/Theme.qml")), "Orvane", 1, 0, "Theme");
}

}  // namespace orvane::ui
