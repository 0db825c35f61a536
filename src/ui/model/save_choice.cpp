#include "ui/model/save_choice.h"

#include <algorithm>

namespace korvanel {

std::optional<std::string_view> SaveGroupForKey(char key) {
  const auto* row = std::ranges::find(kSaveGroupKeys, key, &SaveGroupKey::key);
  if (row == std::end(kSaveGroupKeys)) return std::nullopt;
  return row->group;
}

const SaveMenuEntry* SaveEntryAt(std::string_view group, char place) {
  if (place < '1' || place > '9') return nullptr;
  int remaining = place - '0';
  for (const SaveMenuEntry& entry : kSaveMenu) {
    if (entry.group == group && --remaining == 0) return &entry;
  }
  return nullptr;
}

const SaveMenuEntry* SaveEntryForCommand(Command command) {
  const auto* at = std::ranges::find(kSaveCommands, command);
  if (at == std::end(kSaveCommands)) return nullptr;
  return &kSaveMenu[at - std::begin(kSaveCommands)];
}

std::string SaveGroupPrompt() {
  std::string text = "Save image as:";
  for (const SaveGroupKey& row : kSaveGroupKeys) {
    text += ' ';
    text += row.key;
    text += " - ";
    text += row.group;
    text += ',';
  }
  text.back() = ' ';
  return text + "(Esc cancels)";
}

std::string SaveEntryPrompt(std::string_view group) {
  std::string text = "Save image as " + std::string(group) + ":";
  char place = '1';
  for (const SaveMenuEntry& entry : kSaveMenu) {
    if (entry.group != group) continue;
    text += ' ';
    text += place++;
    text += " - ";
    text += entry.label;
    text += ',';
  }
  text.back() = ' ';
  return text + "(Esc cancels)";
}

}  // namespace korvanel
