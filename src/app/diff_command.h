#pragma once

#include <cstdint>

#include "app/app_state.h"
#include "app/command_outcome.h"

namespace korvanel {

// Diffs the two images of the current comparison into a new registered
// image. `code` is the routine code (bit 0 absolute, bit 1 masked).
// Done when a difference image was created; a failed precondition comes
// back as its message for the caller to show.
CommandOutcome DiffComparison(AppState& app, uint32_t code);

// The code of the diff type the application is set to.
uint32_t CurrentDiffCode(const AppState& app);

}  // namespace korvanel
