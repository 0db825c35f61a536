#pragma once

// The diff from the viewer: D diffs the comparison party with the diff type
// in force; Ctrl+D and the "Diff type" radio items pick the type, whose text
// the status bar shows.

#include <optional>
#include <string_view>

#include "app/config_values.h"
#include "ui/model/commands.h"

namespace korvanel {

class AppState;

struct DiffTypeRow {
  DiffType type;
  Command command;  // its radio item
  std::string_view text;
};

// In the order Ctrl+D cycles through them.
inline constexpr DiffTypeRow kDiffTypes[] = {
    {DiffType::kAllBin, Command::DiffTypeAllBin,
     "Diff type: All pixels are included with binary comparison (equal or not)"},
    {DiffType::kMaskBin, Command::DiffTypeMaskBin,
     "Diff type: Only masked-in pixels are included with binary comparison (equal or not)"},
    {DiffType::kAllAbsDelta, Command::DiffTypeAllAbsDelta,
     "Diff type: All pixels are included with abs difference (up to 255 difference levels)"},
    {DiffType::kMaskAbsDelta, Command::DiffTypeMaskAbsDelta,
     "Diff type: Only masked-in pixels are included with abs difference (up to 255 difference "
     "levels)"},
};

// The type a radio item sets, if `command` is one.
std::optional<DiffType> DiffTypeOfCommand(Command command);

// Sets the type of a radio item; false when `command` is none.
bool SelectDiffType(AppState& app, Command command);
// Shows the text of the type in force in the status bar.
void ShowDiffType(AppState& app);
// The next type in the cycle, shown.
void CycleDiffType(AppState& app);
// Diffs the party; a refused diff says why in a message box.
void DiffParty(AppState& app);

}  // namespace korvanel
