// Whether Orvane may read the keyboard, what the views say when it may not, and the way to the instructions.
#pragma once

#include <QString>

namespace orvane::permission {

// The platform's answer, without a prompt. Main thread only.
bool canReadKeyboard();
// Whether a listen-only capture sees keys (on macOS its own permission, Input Monitoring).
bool canListenToKeyboard();
// Why something cannot work without the permission: "Orvane is not allowed to read the keyboard, so <consequence>."
QString missingText(const QString& consequence);
// The title of the button that shows the instructions.
QString helpButtonTitle();
// Shows the application's instructions for granting it; does nothing where no application runs (a test of one view).
void showHelp();

}  // namespace orvane::permission
