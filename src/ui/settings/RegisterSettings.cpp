#include "ui/UiTypes.h"

namespace orvane::ui {

void registerSettingsTypes() {}

}  // namespace orvane::ui
