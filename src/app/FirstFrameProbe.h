// The start-up benchmark's hook (bench/startup.sh): the time and memory at a window's first frame.
#pragma once

class QQuickWindow;

namespace orvane {

// Where ORVANE_FIRST_FRAME_PROBE names a file, writes "<wall-clock ms> <resident KiB>" to it at the
// window's first frame, then quits the application; otherwise does nothing.
void reportFirstFrameIfAsked(QQuickWindow& window);

}  // namespace orvane
