#include "ui/model/key_tables.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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
      {"keypad + zooms in", {Key::KeypadPlus, {}}, true, false, Command::ZoomIn},
      {"keypad - zooms out", {Key::KeypadMinus, kCtrl}, true, false, Command::ZoomOut},
      {"keypad * fits", {Key::KeypadMultiply, {}}, true, false, Command::FitToWindow},
      {"Shift+keypad * does nothing", {Key::KeypadMultiply, kShift}, true, false, Command::None},
      {"main - clears marks, never zooms", {Key::Minus, {}}, true, false, Command::ClearMarksContext},
      {"Shift+= finds backwards", {Key::Equal, kShift}, true, false, Command::FindPrevious},
      {"Ctrl+= finds next", {Key::Equal, kCtrl}, true, false, Command::FindNext},
      {"= starts the find", {Key::Equal, {}}, true, false, Command::FindPixel},
      {"Tab", {Key::Tab, {}}, true, false, Command::NextImage},
      {"Shift+Tab", {Key::Tab, kShift}, true, false, Command::PreviousImage},
      {"Ctrl+Tab", {Key::Tab, kCtrl}, true, false, Command::None},
      {"G in either case", {Key::G, kShift}, true, false, Command::ToggleGrid},
      {"V", {Key::V, {}}, true, false, Command::TogglePixelValues},
      {"Ctrl+V pastes", {Key::V, kCtrl}, true, false, Command::PasteIntoPhase},
      {"Ctrl+R cycles the ruler colour", {Key::R, kCtrl}, true, false, Command::NextRulerColor},
      {"R alone is a character", {Key::R, {}}, true, false, Command::None},
      {"Ctrl+Shift+B is the colour", {Key::B, {.shift = true, .ctrl = true}}, true, false,
       Command::NextHistogramColor},
      {"Shift+B", {Key::B, kShift}, true, false, Command::ToggleHistogramShadow},
      {"arrows page", {Key::Down, {}}, true, false, Command::ScrollPageDown},
      {"digits are characters", {Key::Digit1, {}}, true, false, Command::None},
      {"Shift alone", {Key::Shift, kShift}, true, false, Command::None},
      {"Ctrl alone", {Key::Control, kCtrl}, true, false, Command::None},
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
      {"Left pages back", {Key::Left, {}}, false, true, Command::HelpPreviousPage},
      {"Down pages back", {Key::Down, {}}, true, true, Command::HelpPreviousPage},
      {"Up pages on", {Key::Up, {}}, false, true, Command::HelpNextPage},
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
      {U'o', Command::ToggleOffset},    {U'O', Command::ToggleOffset},
      {U'x', Command::CloseImage},      {U'X', Command::CloseAll},
      {U'g', Command::None},            {U'+', Command::None},
  };
  for (const auto& [ch, command] : cases) EXPECT_EQ(CommandForChar(ch), command) << static_cast<char>(ch);
}

// Walks the rows as the menu builder does: "&File/&Save raw/Binary/Planner".
std::vector<std::string> MenuPaths() {
  std::vector<std::string> paths;
  std::vector<std::string> stack;
  for (const MenuItem& item : kMenuItems) {
    std::string prefix;
    for (const MenuTitle& title : kMenuTitles) {
      if (title.menu == item.menu) prefix = std::string(title.text);
    }
    for (const std::string& part : stack) prefix += "/" + part;
    switch (item.row) {
      case MenuRow::SubmenuBegin: stack.emplace_back(item.text); break;
      case MenuRow::SubmenuEnd:
        EXPECT_FALSE(stack.empty()) << "unbalanced submenu end";
        if (!stack.empty()) stack.pop_back();
        break;
      case MenuRow::Item: paths.push_back(prefix + "/" + MenuActionText(item)); break;
    }
  }
  EXPECT_TRUE(stack.empty()) << "submenu left open";
  return paths;
}

TEST(MenuTable, SubmenusNestAndItemsShowTheirShortcutAfterATab) {
  const std::vector<std::string> paths = MenuPaths();
  const char* expected[] = {
      "&File/&New duplicate\tN",
      "&File/&Save raw/Original (RAW)",
      "&File/&Save raw/Binary/Interleave (BE)",
      "&File/&Save raw/Text/Original packing",
      "&File/&Save raw/Hexa-Text/Planner (BE)",
      "&File/Save image s&tatistics",
      "&File/&Export to PNG (RGB-8)\tShift+S",
      "&File/E&xit",
      "&Actions/Compare &all \tShift+C",
      "&Actions/Diff t&ype/Only &filtered pixels, absolute-delta",
      "&Actions/Find previous\tShit+=",
      "&Actions/I&terate previous coords\t~",
      "&Developer/Log &RAW format load events",
      "&Help/&About ...",
  };
  for (const char* path : expected) {
    EXPECT_NE(std::find(paths.begin(), paths.end(), path), paths.end()) << path;
  }
}

TEST(MenuTable, ViewAndWindowMenusInOrder) {
  std::vector<std::string> view;
  std::vector<std::string> window;
  for (const std::string& path : MenuPaths()) {
    if (path.starts_with("&View/")) view.push_back(path.substr(6));
    if (path.starts_with("&Window/")) window.push_back(path.substr(8));
  }
  EXPECT_EQ(view, (std::vector<std::string>{
                      "Zoom in\t+", "Zoom out\t-", "Fit-To-Window\t*", "&Grid\tG",
                      "&View pixel\tV", "He&xa values\tH", "&Track XY\tT", "&Offset display\tO",
                      "&Ruler\tR", "Ruler &Matrix mode\tM", "Toggle ruler/li&nes color\tCtrl+R",
                      "&Histogram\tI", "Trans&parent histogram\tB", "&Shadow histogram\tShift+B",
                      "Toggle hi&stogram color\tCtrl+B", "&Beautify decimal values\tA",
                      "Compare\tC", "&Layered compare\tL"}));
  EXPECT_EQ(window, (std::vector<std::string>{"&Toggle last HK window\t~", "&Next HK window",
                                              "&Previous HK window"}));
}

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
