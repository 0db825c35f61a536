#pragma once

#include <string>

#include "app/app_state.h"
#include "app/command_outcome.h"

namespace korvanel {

enum class FilterTarget {
  Image,               // the image itself
  NewImage,            // a duplicate of it, which then carries the filter
  SeparateComponents,  // one new grey image per component
  CompareFamily,       // every compared image of the first one's kind
};

struct FilterCommand {
  std::string expression;
  std::string negation;
  bool all_components = false;
  FilterTarget target = FilterTarget::Image;
  size_t index = 0;  // the image (for CompareFamily: ignored)
};

enum class FilterOutcome { Applied, BadExpression, BadDepth, NoSlots, Failed };

// Which way a filter went (the batch executor words some refusals its own
// way) and the message that tells the user.
struct FilterResult {
  FilterOutcome status = FilterOutcome::Applied;
  CommandOutcome outcome;
};

// Parses and applies a colour filter. The status ends with
// "Filter: Applied in %llu ms".
FilterResult RunFilterCommand(AppState& app, const FilterCommand& command);

// Removes the filter of the image at `index`.
void ClearFilterCommand(AppState& app, size_t index);

}  // namespace korvanel
