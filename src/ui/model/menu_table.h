#pragma once

// The menu bar as data. Rows are read top to bottom: SubmenuBegin opens a
// submenu (its text is the submenu's title) that the matching SubmenuEnd
// closes; Item rows become actions. Menus only show the shortcut text, after a
// tab ("&New duplicate\tN"); the keys themselves are bound by the key tables,
// so no menu shortcut takes a key away from the image area.

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "ui/model/commands.h"

namespace korvanel {

enum class Menu : uint8_t { File, View, Actions, Developer, Window, Help };

struct MenuTitle {
  Menu menu;
  std::string_view text;
};

// Top-level order and titles; the Window menu is the fifth.
inline constexpr MenuTitle kMenuTitles[] = {
    {Menu::File, "&File"},           {Menu::View, "&View"},     {Menu::Actions, "&Actions"},
    {Menu::Developer, "&Developer"}, {Menu::Window, "&Window"}, {Menu::Help, "&Help"},
};

enum class MenuRow : uint8_t { Item, SubmenuBegin, SubmenuEnd };
enum class CheckKind : uint8_t { None, Check, Radio };

struct MenuItem {
  Menu menu;
  MenuRow row;
  std::string_view text;
  std::string_view shortcut;  // shown only; empty for none
  Command command;
  CheckKind check = CheckKind::None;
  bool starts_enabled = true;
};

namespace menu_rows {
constexpr MenuItem Item(Menu m, std::string_view text, std::string_view shortcut, Command c,
                        CheckKind check = CheckKind::None, bool enabled = true) {
  return {m, MenuRow::Item, text, shortcut, c, check, enabled};
}
constexpr MenuItem Begin(Menu m, std::string_view text) {
  return {m, MenuRow::SubmenuBegin, text, {}, Command::None};
}
constexpr MenuItem End(Menu m) { return {m, MenuRow::SubmenuEnd, {}, {}, Command::None}; }
}  // namespace menu_rows

inline constexpr MenuItem kMenuItems[] = {
    // clang-format off
    menu_rows::Item(Menu::File, "&New duplicate", "N", Command::NewDuplicate),
    menu_rows::Item(Menu::File, "&Open...", "", Command::OpenFile),
    menu_rows::Begin(Menu::File, "&Save raw"),
      menu_rows::Item(Menu::File, "Original (RAW)", "", Command::SaveOriginalRaw),
      menu_rows::Begin(Menu::File, "Binary"),
        menu_rows::Item(Menu::File, "Planner", "", Command::SaveBinaryPlanner),
        menu_rows::Item(Menu::File, "Interleave", "", Command::SaveBinaryInterleave),
        menu_rows::Item(Menu::File, "Planner (BE)", "", Command::SaveBinaryPlannerBe),
        menu_rows::Item(Menu::File, "Interleave (BE)", "", Command::SaveBinaryInterleaveBe),
      menu_rows::End(Menu::File),
      menu_rows::Begin(Menu::File, "Text"),
        menu_rows::Item(Menu::File, "Original packing", "", Command::SaveTextOriginal),
        menu_rows::Item(Menu::File, "Planner", "", Command::SaveTextPlanner),
        menu_rows::Item(Menu::File, "Interleave", "", Command::SaveTextInterleave),
      menu_rows::End(Menu::File),
      menu_rows::Begin(Menu::File, "Hexa-Text"),
        menu_rows::Item(Menu::File, "Original packing", "", Command::SaveHexOriginal),
        menu_rows::Item(Menu::File, "Planner", "", Command::SaveHexPlanner),
        menu_rows::Item(Menu::File, "Interleave", "", Command::SaveHexInterleave),
        menu_rows::Item(Menu::File, "Planner (BE)", "", Command::SaveHexPlannerBe),
        menu_rows::Item(Menu::File, "Interleave (BE)", "", Command::SaveHexInterleaveBe),
      menu_rows::End(Menu::File),
    menu_rows::End(Menu::File),
    menu_rows::Item(Menu::File, "Save image s&tatistics", "", Command::SaveStatistics),
    menu_rows::Item(Menu::File, "Save &via Command", "S", Command::SaveViaCommand),
    menu_rows::Item(Menu::File, "&Export to PNG (RGB-8)", "Shift+S", Command::ExportPng),
    menu_rows::Item(Menu::File, "&Auto naming on save", "Ctrl+S", Command::ToggleAutoNaming, CheckKind::Check),
    menu_rows::Item(Menu::File, "&Close", "X", Command::CloseImage),
    menu_rows::Item(Menu::File, "Close &All", "Shift+X", Command::CloseAll),
    menu_rows::Item(Menu::File, "E&xit", "", Command::Exit),

    menu_rows::Item(Menu::View, "Zoom in", "+", Command::ZoomIn),
    menu_rows::Item(Menu::View, "Zoom out", "-", Command::ZoomOut),
    menu_rows::Item(Menu::View, "Fit-To-Window", "*", Command::FitToWindow),
    menu_rows::Item(Menu::View, "&Grid", "G", Command::ToggleGrid, CheckKind::Check),
    menu_rows::Item(Menu::View, "&View pixel", "V", Command::TogglePixelValues, CheckKind::Check),
    menu_rows::Item(Menu::View, "He&xa values", "H", Command::ToggleHex, CheckKind::Check),
    menu_rows::Item(Menu::View, "&Track XY", "T", Command::ToggleTracking, CheckKind::Check),
    menu_rows::Item(Menu::View, "&Offset display", "O", Command::ToggleOffset, CheckKind::Check),
    menu_rows::Item(Menu::View, "&Ruler", "R", Command::ToggleRuler, CheckKind::Check),
    menu_rows::Item(Menu::View, "Ruler &Matrix mode", "M", Command::ToggleRulerMatrix, CheckKind::Check),
    menu_rows::Item(Menu::View, "Toggle ruler/li&nes color", "Ctrl+R", Command::NextRulerColor),
    menu_rows::Item(Menu::View, "&Histogram", "I", Command::ToggleHistogram, CheckKind::Check),
    menu_rows::Item(Menu::View, "Trans&parent histogram", "B", Command::ToggleHistogramTransparent, CheckKind::Check),
    menu_rows::Item(Menu::View, "&Shadow histogram", "Shift+B", Command::ToggleHistogramShadow, CheckKind::Check),
    menu_rows::Item(Menu::View, "Toggle hi&stogram color", "Ctrl+B", Command::NextHistogramColor),
    menu_rows::Item(Menu::View, "&Beautify decimal values", "A", Command::ToggleBeautify, CheckKind::Check),
    menu_rows::Item(Menu::View, "Compare", "C", Command::CompareLabel, CheckKind::Check),
    menu_rows::Item(Menu::View, "&Layered compare", "L", Command::ToggleLayerMode, CheckKind::Check),

    menu_rows::Item(Menu::Actions, "&Compare start", "C", Command::CompareStart),
    menu_rows::Item(Menu::Actions, "Compare &all ", "Shift+C", Command::CompareAll),
    menu_rows::Item(Menu::Actions, "&Diff", "D", Command::Diff),
    menu_rows::Begin(Menu::Actions, "Diff t&ype"),
      menu_rows::Item(Menu::Actions, "&All pixels, binary comparison", "", Command::DiffTypeAllBin, CheckKind::Radio),
      menu_rows::Item(Menu::Actions, "&Only filtered pixels, binary comparison", "", Command::DiffTypeMaskBin, CheckKind::Radio),
      menu_rows::Item(Menu::Actions, "All pixels, absolute-&delta", "", Command::DiffTypeAllAbsDelta, CheckKind::Radio),
      menu_rows::Item(Menu::Actions, "Only &filtered pixels, absolute-delta", "", Command::DiffTypeMaskAbsDelta, CheckKind::Radio),
    menu_rows::End(Menu::Actions),
    menu_rows::Item(Menu::Actions, "C&opy image as BMP-24bpp", "Ctrl+C", Command::CopyImage),
    menu_rows::Item(Menu::Actions, "Co&py image full path", "", Command::CopyImagePath),
    menu_rows::Item(Menu::Actions, "Con&vert...", "Shift+N", Command::Convert),
    menu_rows::Item(Menu::Actions, "&Jump to coordinate", "J", Command::JumpToCoordinate),
    menu_rows::Item(Menu::Actions, "I&terate previous coords", "~", Command::JumpIteratePrevious),
    menu_rows::Item(Menu::Actions, "Iterate ROI cor&ners", "R", Command::JumpIterateRoiCorners),
    menu_rows::Item(Menu::Actions, "Paste pi&xel coordinate", "Ctrl+V", Command::JumpPasteCoordinate),
    menu_rows::Item(Menu::Actions, "Fi&nd pixel", "=", Command::FindPixel),
    menu_rows::Item(Menu::Actions, "Find next", "Ctrl+=", Command::FindNext),
    // The misspelt shortcut text is the program's own and is kept.
    menu_rows::Item(Menu::Actions, "Find previous", "Shit+=", Command::FindPrevious),
    menu_rows::Item(Menu::Actions, "Paste pixel value", "Ctrl+V", Command::FindPasteValue),
    menu_rows::Item(Menu::Actions, "Clear all marked pixels", "-", Command::ClearMarkedPixels, CheckKind::None, false),
    menu_rows::Item(Menu::Actions, "&Filter...", "F", Command::FilterDialog),
    menu_rows::Item(Menu::Actions, "C&lear active filter", "Shift+F", Command::ClearFilter),
    menu_rows::Item(Menu::Actions, "Apply acti&ve filter", "Ctrl+F", Command::ReapplyFilter),
    menu_rows::Item(Menu::Actions, "&Image evaluator...", "E", Command::ImageEvaluator),
    menu_rows::Item(Menu::Actions, "Reapply last I-&Eval", "Ctrl+E", Command::ReapplyIEval),
    menu_rows::Item(Menu::Actions, "&Ruler settings...", "Shift+R", Command::RulerSettings),

    menu_rows::Item(Menu::Developer, "&Hexa text-save as C layout", "", Command::ToggleHexTextCLayout, CheckKind::Check),
    menu_rows::Item(Menu::Developer, "&Favor lower memory usage over speed", "", Command::ToggleFavorLowMemory, CheckKind::Check),
    menu_rows::Item(Menu::Developer, "&Log app messages", "", Command::ToggleAppLog, CheckKind::Check),
    menu_rows::Item(Menu::Developer, "Log &RAW format load events", "", Command::ToggleFormatLog, CheckKind::Check),

    menu_rows::Item(Menu::Window, "&Toggle last HK window", "~", Command::BackKey),
    menu_rows::Item(Menu::Window, "&Next HK window", "", Command::NextImage),
    menu_rows::Item(Menu::Window, "&Previous HK window", "", Command::PreviousImage),

    menu_rows::Item(Menu::Help, "&Help...", "F1", Command::HelpWindow),
    menu_rows::Item(Menu::Help, "Check for &updates...", "", Command::CheckUpdates),
    menu_rows::Item(Menu::Help, "&About ...", "", Command::About),
    // clang-format on
};

// "text\tshortcut", or the text alone when the item shows no shortcut.
std::string MenuActionText(const MenuItem& item);

// The first item row bound to `command`, or null.
const MenuItem* FindMenuItem(Command command);

}  // namespace korvanel
