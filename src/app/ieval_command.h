#pragma once

#include <cstddef>
#include <vector>

#include "app/app_state.h"
#include "ops/ieval_operation.h"

namespace korvanel {

// An I-Eval over the images at `indices` (image 1 first): name markers are
// expanded from the saved list, the stages run on the pool, new images are
// registered as "ieval_out_image" and replaced ones take their results.
// Messages go to the user; the last status says how long it took. True when
// every stage finished.
bool RunIEvalCommand(AppState& app, const IEvalRequest& request, const std::vector<size_t>& indices);

}  // namespace korvanel
