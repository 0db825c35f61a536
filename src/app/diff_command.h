#pragma once

#include <cstdint>

#include "app/app_state.h"

namespace korvanel {

// Diffs the two images of the current comparison into a new registered
// image. `code` is the routine code (bit 0 absolute, bit 1 masked).
// Precondition failures are shown when `report` is set. True when a
// difference image was created.
bool DiffComparison(AppState& app, uint32_t code, bool report);

// The code of the diff type the application is set to.
uint32_t CurrentDiffCode(const AppState& app);

}  // namespace korvanel
