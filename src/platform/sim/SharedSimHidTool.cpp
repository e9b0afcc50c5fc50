// The simulated platform names the system's own tool, as on macOS.
#include "platform/HidTool.h"

namespace orvane {

QString hidToolPath() { return QStringLiteral("/usr/bin/hidutil"); }

}  // namespace orvane
