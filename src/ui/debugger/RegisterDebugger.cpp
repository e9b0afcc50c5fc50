#include "ui/UiTypes.h"

namespace orvane::ui {

void registerDebuggerTypes() {}

}  // namespace orvane::ui
