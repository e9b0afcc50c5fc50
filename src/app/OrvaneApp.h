// The application type: single-instance handover, the delegate's services, start-up and quit.
#pragma once

namespace orvane {

// Returns the process's exit status.
int runOrvaneApp(int argc, char** argv);

}  // namespace orvane
