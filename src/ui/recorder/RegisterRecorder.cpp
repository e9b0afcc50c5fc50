#include "ui/UiTypes.h"

namespace orvane::ui {

void registerRecorderTypes() {}

}  // namespace orvane::ui
