#include "ui/model/last_filter.h"

#include "app/app_state.h"
#include "app/command_outcome.h"

namespace korvanel {

bool CLastFilter::Reapply(AppState& app, size_t index) const {
  if (!last_ || index >= app.Images().Count()) return false;
  FilterCommand command = *last_;
  command.index = index;
  ShowOutcome(app, RunFilterCommand(app, command).outcome);
  return true;
}

}  // namespace korvanel
