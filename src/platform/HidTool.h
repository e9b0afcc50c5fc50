// Where the HID tool lives: the program the mapping store runs to remap Caps Lock below the event taps.
#pragma once

#include <QString>

namespace orvane {

// The tool's path on this platform, as the backend set the executable links defines it.
QString hidToolPath();

}  // namespace orvane
