// On Linux the HID tool is orvane-hidutil, installed beside the application.
#include "platform/HidTool.h"

#include <QCoreApplication>

namespace orvane {

QString hidToolPath() { return QCoreApplication::applicationDirPath() + QStringLiteral("/orvane-hidutil"); }

}  // namespace orvane
