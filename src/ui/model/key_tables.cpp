#include "ui/model/key_tables.h"

#include <algorithm>

namespace korvanel {

namespace {

Command FindKey(std::span<const KeyBinding> table, const KeyInput& input) {
  for (const KeyBinding& row : table) {
    if (row.key == input.key && ModifiersMatch(row.mods, input.mods)) return row.command;
  }
  return Command::None;
}

}  // namespace

bool KeyAllowedWithoutImage(Key key) {
  return std::ranges::find(kNoImageKeys, key) != std::end(kNoImageKeys);
}

Command CommandForKey(const KeyInput& input, bool has_images, bool help_visible) {
  if (const Command window = FindKey(kWindowKeyBindings, input); window != Command::None) return window;
  if (!KeyInViewRange(input.key)) return Command::None;
  if (!has_images && !KeyAllowedWithoutImage(input.key)) return Command::None;
  if (help_visible) {
    const Command help = FindKey(kHelpKeyBindings, input);
    if (help != Command::None) return help;
  }
  return FindKey(kKeyBindings, input);
}

std::optional<uint32_t> SlotForChar(char32_t ch) {
  if (ch > 0x7F) return std::nullopt;
  const char c = static_cast<char>(ch);
  if (const size_t at = kSlotChars.find(c); at != std::string_view::npos) {
    return static_cast<uint32_t>(at) + 1;
  }
  if (const size_t at = kShiftedSlotChars.find(c); at != std::string_view::npos) {
    return static_cast<uint32_t>(at + kSlotChars.size()) + 1;
  }
  return std::nullopt;
}

Command CommandForChar(char32_t ch) {
  for (const CharBinding& row : kCharBindings) {
    if (row.ch == ch) return row.command;
  }
  return Command::None;
}

}  // namespace korvanel
