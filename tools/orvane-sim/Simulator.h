// Runs a script through the real store, tap manager, recorder and capture over the simulated system.
#pragma once

#include "Options.h"
#include "Script.h"

namespace orvane::sim {

// Start-up, then every item in order; prints as the components and the script format say.
// Returns the process's exit status.
int runSimulation(const Options& options, const std::string& storedMappings, bool hasStoredMappings,
                  const std::vector<ScriptItem>& script);

}  // namespace orvane::sim
