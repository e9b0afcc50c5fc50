#include "ui/UiTypes.h"

#include "ui/mappings/AddMappingController.h"
#include "ui/mappings/MappingListModel.h"

#include <QQmlEngine>

namespace orvane::ui {

void registerMappingsTypes() {
    // Each list window makes its own model over the shared store.
    qmlRegisterType<MappingListModel>("Orvane", 1, 0, "MappingListModel");
    qmlRegisterUncreatableType<AddMappingController>("Orvane", 1, 0, "AddMappingController",
                                                     QStringLiteral("The list model opens the add/edit sheet"));
}

}  // namespace orvane::ui
