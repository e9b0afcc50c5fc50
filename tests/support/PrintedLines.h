// The lines Orvane prints, caught while the object lives instead of going to standard output.
#pragma once

#include "platform/Diagnostics.h"

namespace orvane::testing {

struct PrintedLines : std::vector<std::string> {
    PrintedLines() { diagnostics::redirectTo(this); }
    PrintedLines(const PrintedLines&) = delete;
    ~PrintedLines() { diagnostics::redirectTo(nullptr); }
};

}  // namespace orvane::testing
