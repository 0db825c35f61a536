#pragma once

// Which way to save, chosen from the save menu table: by the File > "&Save
// raw" items, or by two keys in the save phase. The first key picks the
// group (b Binary, t Text, h Hexa-Text), the second the entry's place in
// that group, counted from 1 in menu order; so "b1" is "Original (RAW)",
// which the menu shows above the Binary group but the table files under it.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "files/save_kind.h"
#include "ui/model/commands.h"

namespace korvanel {

struct SaveGroupKey {
  char key;
  std::string_view group;  // as kSaveMenu names it
};

inline constexpr SaveGroupKey kSaveGroupKeys[] = {
    {'b', "Binary"},
    {'t', "Text"},
    {'h', "Hexa-Text"},
};

// The File > "&Save raw" commands, in kSaveMenu order.
inline constexpr Command kSaveCommands[] = {
    Command::SaveOriginalRaw,    Command::SaveBinaryPlanner,   Command::SaveBinaryInterleave,
    Command::SaveBinaryPlannerBe, Command::SaveBinaryInterleaveBe, Command::SaveTextOriginal,
    Command::SaveTextPlanner,    Command::SaveTextInterleave,  Command::SaveHexOriginal,
    Command::SaveHexPlanner,     Command::SaveHexInterleave,   Command::SaveHexPlannerBe,
    Command::SaveHexInterleaveBe,
};
static_assert(std::size(kSaveCommands) == std::size(kSaveMenu));

// The group a first key picks, or nothing.
std::optional<std::string_view> SaveGroupForKey(char key);
// The entry at the 1-based `place` ("1".."9") of `group`, or null.
const SaveMenuEntry* SaveEntryAt(std::string_view group, char place);
// The entry a File > "&Save raw" command saves with, or null.
const SaveMenuEntry* SaveEntryForCommand(Command command);

// The prompts of the two steps.
std::string SaveGroupPrompt();
std::string SaveEntryPrompt(std::string_view group);

}  // namespace korvanel
