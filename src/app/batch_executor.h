#pragma once

// Runs parsed commands against the application state, in order, resolving
// HK references at the moment each command runs. The first failed command
// ends the run (an argument list is all or nothing).

#include <vector>

#include "app/app_state.h"
#include "app/command_line.h"

namespace korvanel {

bool RunBatchCommands(AppState& app, const std::vector<ParsedCommand>& commands);

}  // namespace korvanel
