#include "ui/UiTypes.h"

namespace orvane::ui {

void registerMappingsTypes() {}

}  // namespace orvane::ui
