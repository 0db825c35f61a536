#include "ui/model/diff_commands.h"

#include <algorithm>
#include <string>

#include "app/app_state.h"
#include "app/command_outcome.h"
#include "app/diff_command.h"

namespace korvanel {

namespace {

size_t RowOf(DiffType type) {
  const auto* row = std::ranges::find(kDiffTypes, type, &DiffTypeRow::type);
  return row == std::end(kDiffTypes) ? 0 : static_cast<size_t>(row - std::begin(kDiffTypes));
}

}  // namespace

std::optional<DiffType> DiffTypeOfCommand(Command command) {
  const auto* row = std::ranges::find(kDiffTypes, command, &DiffTypeRow::command);
  if (row == std::end(kDiffTypes)) return std::nullopt;
  return row->type;
}

bool SelectDiffType(AppState& app, Command command) {
  const std::optional<DiffType> type = DiffTypeOfCommand(command);
  if (type) app.SetDiffType(*type);
  return type.has_value();
}

void ShowDiffType(AppState& app) {
  const std::string_view text = kDiffTypes[RowOf(app.GetDiffType())].text;
  app.StatusMessage("%.*s", static_cast<int>(text.size()), text.data());
}

void CycleDiffType(AppState& app) {
  const size_t next = (RowOf(app.GetDiffType()) + 1) % std::size(kDiffTypes);
  app.SetDiffType(kDiffTypes[next].type);
  ShowDiffType(app);
}

void DiffParty(AppState& app) { ShowOutcome(app, DiffComparison(app, CurrentDiffCode(app))); }

}  // namespace korvanel
