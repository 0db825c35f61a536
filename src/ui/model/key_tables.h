#pragma once

// Key-down and character bindings of the image area. Key rows are matched in
// order, first hit wins; letters are physical keys, so case does not matter
// there, while character rows are case-sensitive. Rows with a modifier
// condition come before the same key's catch-all row.

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "ui/model/commands.h"
#include "ui/model/keys.h"

namespace korvanel {

enum class ModMatch : uint8_t {
  Any,      // whatever is held
  Plain,    // neither Ctrl nor Shift
  Shift,    // Shift without Ctrl
  Ctrl,     // Ctrl, Shift or not
  NoShift,  // anything but Shift
  Alt,      // Alt without Ctrl, Shift or not
};

constexpr bool ModifiersMatch(ModMatch match, const Modifiers& mods) {
  switch (match) {
    case ModMatch::Any: return true;
    case ModMatch::Plain: return !mods.ctrl && !mods.shift;
    case ModMatch::Shift: return mods.shift && !mods.ctrl;
    case ModMatch::Ctrl: return mods.ctrl;
    case ModMatch::NoShift: return !mods.shift;
    case ModMatch::Alt: return mods.alt && !mods.ctrl;
  }
  return false;
}

struct KeyBinding {
  Key key;
  ModMatch mods;
  Command command;
};

inline constexpr KeyBinding kKeyBindings[] = {
    {Key::Tab, ModMatch::Shift, Command::PreviousImage},
    {Key::Tab, ModMatch::Plain, Command::NextImage},
    {Key::Escape, ModMatch::Any, Command::Escape},
    {Key::Left, ModMatch::Any, Command::ScrollPageLeft},
    {Key::Right, ModMatch::Any, Command::ScrollPageRight},
    {Key::Up, ModMatch::Any, Command::ScrollPageUp},
    {Key::Down, ModMatch::Any, Command::ScrollPageDown},
    {Key::A, ModMatch::Any, Command::ToggleBeautify},
    {Key::B, ModMatch::Ctrl, Command::NextHistogramColor},
    {Key::B, ModMatch::Shift, Command::ToggleHistogramShadow},
    {Key::B, ModMatch::Plain, Command::ToggleHistogramTransparent},
    {Key::C, ModMatch::Ctrl, Command::CopyContext},
    {Key::D, ModMatch::Ctrl, Command::CycleDiffType},
    {Key::D, ModMatch::Plain, Command::Diff},
    {Key::E, ModMatch::Ctrl, Command::ReapplyIEval},
    {Key::E, ModMatch::Plain, Command::ImageEvaluator},
    {Key::F, ModMatch::Ctrl, Command::ReapplyFilter},
    {Key::G, ModMatch::Any, Command::ToggleGrid},
    {Key::H, ModMatch::Any, Command::ToggleHex},
    {Key::I, ModMatch::Any, Command::ToggleHistogram},
    {Key::J, ModMatch::Any, Command::JumpToCoordinate},
    {Key::M, ModMatch::Any, Command::ToggleRulerMatrix},
    {Key::P, ModMatch::Any, Command::CopyPixelText},
    {Key::R, ModMatch::Ctrl, Command::NextRulerColor},
    {Key::S, ModMatch::Ctrl, Command::ToggleAutoNaming},
    {Key::V, ModMatch::Ctrl, Command::PasteIntoPhase},
    {Key::V, ModMatch::Plain, Command::TogglePixelValues},
    {Key::KeypadMultiply, ModMatch::NoShift, Command::FitToWindow},
    {Key::KeypadPlus, ModMatch::Any, Command::ZoomIn},
    {Key::KeypadMinus, ModMatch::Any, Command::ZoomOut},
    {Key::F1, ModMatch::Any, Command::ToggleHelpOverlay},
    {Key::Equal, ModMatch::Ctrl, Command::FindNext},
    {Key::Equal, ModMatch::Shift, Command::FindPrevious},
    {Key::Equal, ModMatch::Plain, Command::FindPixel},
    {Key::Minus, ModMatch::Any, Command::ClearMarksContext},
};

// The window's keys: they work outside the image area's key range, with or
// without images and help.
inline constexpr KeyBinding kWindowKeyBindings[] = {
    {Key::Slash, ModMatch::Alt, Command::About},  // Alt+/ and Alt+?
};

// While the help overlay is visible these keys page it instead.
inline constexpr KeyBinding kHelpKeyBindings[] = {
    {Key::Home, ModMatch::Any, Command::HelpFirstPage},
    {Key::End, ModMatch::Any, Command::HelpLastPage},
    {Key::Left, ModMatch::Any, Command::HelpPreviousPage},
    {Key::Down, ModMatch::Any, Command::HelpPreviousPage},
    {Key::Up, ModMatch::Any, Command::HelpNextPage},
    {Key::Right, ModMatch::Any, Command::HelpNextPage},
};

// The keys that pass while no image is open. Keypad 3 and 9 pass as well
// and have no binding: kept as the program always had it.
inline constexpr Key kNoImageKeys[] = {
    Key::F1,   Key::Escape, Key::Home,    Key::End,     Key::Left,
    Key::Up,   Key::Right,  Key::Down,    Key::Keypad3, Key::Keypad9,
};

bool KeyAllowedWithoutImage(Key key);

// The command of a key-down, or Command::None. The window's keys first;
// then the range rule, the no-image filter and, while help is shown, the
// help rows first.
Command CommandForKey(const KeyInput& input, bool has_images, bool help_visible);

struct CharBinding {
  char32_t ch;
  Command command;
};

inline constexpr CharBinding kCharBindings[] = {
    {U'c', Command::CompareStart},     {U'C', Command::CompareAll},
    {U'f', Command::FilterDialog},     {U'F', Command::ClearFilter},
    {U'L', Command::LayerModeKey},     {U'l', Command::LayerModeKey},
    {U'n', Command::DuplicateOrCrop},  {U'N', Command::Convert},
    {U'O', Command::ToggleOffset},     {U'o', Command::ToggleOffset},
    {U'r', Command::ToggleRuler},      {U'R', Command::RulerSettings},
    {U's', Command::SaveViaCommand},   {U'S', Command::ExportPng},
    {U'T', Command::ToggleTracking},   {U't', Command::ToggleTracking},
    {U'x', Command::CloseImage},       {U'X', Command::CloseAll},
    {U'`', Command::BackKey},          {U'~', Command::BackKey},
};

// Characters that select HK slots by their place: "1".."9","0" are slots
// 1..10 and the shifted digits of a US keyboard are slots 11..20.
inline constexpr std::string_view kSlotChars = "1234567890";
inline constexpr std::string_view kShiftedSlotChars = "!@#$%^&*()";

// The HK slot (1..20) a character selects, if any.
std::optional<uint32_t> SlotForChar(char32_t ch);
Command CommandForChar(char32_t ch);

}  // namespace korvanel
