#include "ui/model/key_tables.h"

#include <gtest/gtest.h>

#include "ui/model/menu_table.h"

namespace korvanel {
namespace {

struct KeyCase {
  const char* name;
  KeyInput input;
  bool images;
  bool help;
  Command expected;
};

TEST(KeyTables, KeyDownDispatch) {
  const KeyCase cases[] = {
      {"keypad - zooms out", {Key::KeypadMinus, kCtrl}, true, false, Command::ZoomOut},
      {"keypad * fits", {Key::KeypadMultiply, {}}, true, false, Command::FitToWindow},
      {"Shift+keypad * does nothing", {Key::KeypadMultiply, kShift}, true, false, Command::None},
      {"main - clears marks, never zooms", {Key::Minus, {}}, true, false, Command::ClearMarksContext},
      {"Shift+= finds backwards", {Key::Equal, kShift}, true, false, Command::FindPrevious},
      {"Ctrl+= finds next", {Key::Equal, kCtrl}, true, false, Command::FindNext},
      {"= starts the find", {Key::Equal, {}}, true, false, Command::FindPixel},
      {"Shift+Tab", {Key::Tab, kShift}, true, false, Command::PreviousImage},
      {"Ctrl+Tab", {Key::Tab, kCtrl}, true, false, Command::None},
      {"G in either case", {Key::G, kShift}, true, false, Command::ToggleGrid},
      {"Ctrl+V pastes", {Key::V, kCtrl}, true, false, Command::PasteIntoPhase},
      {"R alone is a character", {Key::R, {}}, true, false, Command::None},
      {"Ctrl+Shift+B is the colour", {Key::B, {.shift = true, .ctrl = true}}, true, false,
       Command::NextHistogramColor},
      {"Shift+B", {Key::B, kShift}, true, false, Command::ToggleHistogramShadow},
      {"digits are characters", {Key::Digit1, {}}, true, false, Command::None},
      {"Shift alone", {Key::Shift, kShift}, true, false, Command::None},
      {"unbound key in range", {Key::Q, {}}, true, false, Command::None},
      {"below the range", {Key::Backspace, {}}, true, false, Command::None},
      {"above the range", {Key::Backtick, {}}, true, false, Command::None},
      {"unknown", {Key::Unknown, {}}, true, false, Command::None},
      {"F1 without images", {Key::F1, {}}, false, false, Command::ToggleHelpOverlay},
      {"Esc without images", {Key::Escape, {}}, false, false, Command::Escape},
      {"arrow without images", {Key::Left, {}}, false, false, Command::ScrollPageLeft},
      {"G without images", {Key::G, {}}, false, false, Command::None},
      {"keypad + without images", {Key::KeypadPlus, {}}, false, false, Command::None},
      {"Home pages help", {Key::Home, {}}, false, true, Command::HelpFirstPage},
      {"End pages help", {Key::End, {}}, true, true, Command::HelpLastPage},
      {"Down pages back", {Key::Down, {}}, true, true, Command::HelpPreviousPage},
      {"Right pages on", {Key::Right, {}}, true, true, Command::HelpNextPage},
      {"F1 hides help", {Key::F1, {}}, false, true, Command::ToggleHelpOverlay},
      {"Home without help", {Key::Home, {}}, true, false, Command::None},
  };
  for (const KeyCase& c : cases) {
    EXPECT_EQ(CommandForKey(c.input, c.images, c.help), c.expected) << c.name;
  }
}

TEST(KeyTables, SlotCharacters) {
  const std::pair<char32_t, std::optional<uint32_t>> cases[] = {
      {U'1', 1},  {U'9', 9},  {U'0', 10},           {U'!', 11},           {U'(', 19},
      {U')', 20}, {U'*', 18}, {U'a', std::nullopt}, {U'-', std::nullopt}, {U'\u00a7', std::nullopt},
  };
  for (const auto& [ch, slot] : cases) EXPECT_EQ(SlotForChar(ch), slot) << static_cast<int>(ch);
}

TEST(KeyTables, CharactersAreCaseSensitive) {
  const std::pair<char32_t, Command> cases[] = {
      {U'r', Command::ToggleRuler},     {U'R', Command::RulerSettings},
      {U'`', Command::BackKey},         {U'~', Command::BackKey},
      {U'x', Command::CloseImage},      {U'X', Command::CloseAll},
      {U'g', Command::None},            {U'+', Command::None},
  };
  for (const auto& [ch, command] : cases) EXPECT_EQ(CommandForChar(ch), command) << static_cast<char>(ch);
}

// A command no key, character or menu item reaches is dead.
TEST(MenuTable, EveryCommandIsReachable) {
  const auto bound = [](Command command) {
    for (const KeyBinding& row : kKeyBindings) if (row.command == command) return true;
    for (const KeyBinding& row : kHelpKeyBindings) if (row.command == command) return true;
    for (const CharBinding& row : kCharBindings) if (row.command == command) return true;
    return FindMenuItem(command) != nullptr;
  };
  for (auto c = static_cast<uint16_t>(Command::None) + 1;
       c <= static_cast<uint16_t>(Command::HelpNextPage); ++c) {
    EXPECT_TRUE(bound(static_cast<Command>(c))) << "command " << c;
  }
}

// Alt+/ and Alt+? (Shift+/) open the about box with or without images, help
// shown or not: the window's only keys outside the image area's range.
TEST(KeyTables, AltSlashOpensAboutEverywhere) {
  for (const bool images : {false, true}) {
    for (const bool help : {false, true}) {
      EXPECT_EQ(CommandForKey({Key::Slash, {.alt = true}}, images, help), Command::About);
      EXPECT_EQ(CommandForKey({Key::Slash, {.shift = true, .alt = true}}, images, help), Command::About);
    }
  }
  EXPECT_EQ(CommandForKey({Key::Slash, {}}, true, false), Command::None);
  EXPECT_EQ(CommandForKey({Key::Slash, {.ctrl = true, .alt = true}}, true, false), Command::None);
}

}  // namespace
}  // namespace korvanel
