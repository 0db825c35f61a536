#include "app/command_outcome.h"

#include "app/app_state.h"

namespace korvanel {

void ShowOutcome(AppState& app, const CommandOutcome& outcome) {
  if (!outcome.done && !outcome.caption.empty()) app.ShowMessage(outcome.text, outcome.caption);
}

}  // namespace korvanel
