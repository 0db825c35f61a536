#include "ui/model/command_table.h"

#include <gtest/gtest.h>

#include <string>

#include "ui/model/key_tables.h"
#include "ui/model/menu_table.h"

namespace korvanel {
namespace {

// A command reached by a menu item, a key or a character that has no row
// does nothing at all; a check mark without a row never follows the state.
TEST(CommandTable, EveryReachableCommandRunsAndEveryCheckMarkFollowsItsState) {
  for (const MenuItem& item : kMenuItems) {
    if (item.row != MenuRow::Item || item.command == Command::Exit) continue;
    const CommandRow* row = FindCommandRow(item.command);
    ASSERT_NE(row, nullptr) << item.text;
    if (item.check != CheckKind::None) {
      EXPECT_NE(row->checked, nullptr) << item.text;
    }
    if (item.command != Command::CompareLabel) {
      EXPECT_NE(row->run, nullptr) << item.text;
    }
  }
  const auto runs = [](Command command) {
    const CommandRow* row = FindCommandRow(command);
    return row != nullptr && row->run != nullptr;
  };
  for (const KeyBinding& binding : kKeyBindings) EXPECT_TRUE(runs(binding.command)) << static_cast<int>(binding.key);
  for (const KeyBinding& binding : kHelpKeyBindings) EXPECT_TRUE(runs(binding.command)) << static_cast<int>(binding.key);
  for (const KeyBinding& binding : kWindowKeyBindings) EXPECT_TRUE(runs(binding.command)) << static_cast<int>(binding.key);
  for (const CharBinding& binding : kCharBindings) EXPECT_TRUE(runs(binding.command)) << static_cast<char>(binding.ch);
}

}  // namespace
}  // namespace korvanel
