// One-line diagnostics on standard output, whole lines only, from any thread.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace orvane::diagnostics {

// Writes the text and a newline as one unit, then flushes. Never interleaves with another line.
void printLine(std::string_view text);

// While holding, lines printed from threads other than the holder's are kept back, in order,
// until releaseHeld(). The simulator uses this so that background lines always land at the same
// place in its output, whatever the timing.
void holdBackgroundLines(bool hold);
void releaseHeld();

// While set, every line goes into the given list instead of standard output (tests read it).
void redirectTo(std::vector<std::string>* lines);

}  // namespace orvane::diagnostics
