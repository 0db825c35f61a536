#include "ui/qt/key_map.h"

#include <QKeyEvent>

namespace korvanel {
namespace {

enum class Pad : uint8_t { Either, Keypad, Main };

struct KeyRow {
  int qt_key;
  Pad pad;
  Key key;
  bool implies_shift = false;  // X11 reports the shifted key, not the modifier's effect
};

// clang-format off
constexpr KeyRow kKeyRows[] = {
    {Qt::Key_Tab, Pad::Either, Key::Tab},
    {Qt::Key_Backtab, Pad::Either, Key::Tab, true},          // X11 Shift+Tab
    {Qt::Key_Backspace, Pad::Either, Key::Backspace},
    {Qt::Key_Return, Pad::Either, Key::Return},
    {Qt::Key_Enter, Pad::Either, Key::Return},
    {Qt::Key_Shift, Pad::Either, Key::Shift},
    {Qt::Key_Control, Pad::Either, Key::Control},
    {Qt::Key_Alt, Pad::Either, Key::Alt},
    {Qt::Key_Escape, Pad::Either, Key::Escape},
    {Qt::Key_Space, Pad::Either, Key::Space},
    {Qt::Key_PageUp, Pad::Either, Key::PageUp},
    {Qt::Key_PageDown, Pad::Either, Key::PageDown},
    {Qt::Key_End, Pad::Either, Key::End},
    {Qt::Key_Home, Pad::Either, Key::Home},
    {Qt::Key_Left, Pad::Either, Key::Left},
    {Qt::Key_Up, Pad::Either, Key::Up},
    {Qt::Key_Right, Pad::Either, Key::Right},
    {Qt::Key_Down, Pad::Either, Key::Down},
    {Qt::Key_Insert, Pad::Either, Key::Insert},
    {Qt::Key_Delete, Pad::Either, Key::Delete},
    {Qt::Key_Asterisk, Pad::Keypad, Key::KeypadMultiply},
    {Qt::Key_Plus, Pad::Keypad, Key::KeypadPlus},
    {Qt::Key_Plus, Pad::Main, Key::Equal, true},              // X11 Shift+=
    {Qt::Key_Minus, Pad::Keypad, Key::KeypadMinus},
    {Qt::Key_Minus, Pad::Main, Key::Minus},
    {Qt::Key_Underscore, Pad::Main, Key::Minus, true},        // X11 Shift+-
    {Qt::Key_Period, Pad::Keypad, Key::KeypadDecimal},
    {Qt::Key_Period, Pad::Main, Key::Period},
    {Qt::Key_Slash, Pad::Keypad, Key::KeypadDivide},
    {Qt::Key_Slash, Pad::Main, Key::Slash},
    {Qt::Key_Question, Pad::Main, Key::Slash, true},         // X11 Shift+/
    {Qt::Key_Equal, Pad::Main, Key::Equal},
    {Qt::Key_Comma, Pad::Main, Key::Comma},
    {Qt::Key_Semicolon, Pad::Main, Key::Semicolon},
    {Qt::Key_QuoteLeft, Pad::Main, Key::Backtick},
};
// clang-format on

// Letters, digits and function keys are contiguous in both vocabularies.
struct KeyRange {
  int qt_first;
  int qt_last;
  Pad pad;
  Key first;
};

constexpr KeyRange kKeyRanges[] = {
    {Qt::Key_A, Qt::Key_Z, Pad::Either, Key::A},
    {Qt::Key_0, Qt::Key_9, Pad::Main, Key::Digit0},
    {Qt::Key_0, Qt::Key_9, Pad::Keypad, Key::Keypad0},
    {Qt::Key_F1, Qt::Key_F12, Pad::Either, Key::F1},
};

bool PadMatches(Pad pad, bool keypad) {
  return pad == Pad::Either || (pad == Pad::Keypad) == keypad;
}

KeyInput LookUp(int qt_key, bool keypad, Modifiers mods) {
  for (const KeyRow& row : kKeyRows) {
    if (row.qt_key != qt_key || !PadMatches(row.pad, keypad)) continue;
    if (row.implies_shift) mods.shift = true;
    return {row.key, mods};
  }
  for (const KeyRange& range : kKeyRanges) {
    if (qt_key < range.qt_first || qt_key > range.qt_last || !PadMatches(range.pad, keypad)) continue;
    return {static_cast<Key>(static_cast<int>(range.first) + (qt_key - range.qt_first)), mods};
  }
  return {Key::Unknown, mods};
}

// A character event follows only without Ctrl (Ctrl+V gives "\x16" on X11
// and "v" under QTest) or Alt (menu mnemonics), and only for printable text, Backspace and Tab; the
// keypad star is a zoom key, never a typed "*".
std::optional<char32_t> TypedChar(const QString& text, const Modifiers& mods, bool keypad) {
  if (mods.ctrl || mods.alt || text.isEmpty()) return std::nullopt;
  const QList<uint> codes = text.toUcs4();
  if (codes.size() != 1) return std::nullopt;
  const char32_t ch = codes.front();
  if (ch == U'*' && (keypad || !mods.shift)) return std::nullopt;
  if (ch == U'\b' || ch == U'\t') return ch;
  if (ch < 0x20 || ch == 0x7F) return std::nullopt;
  return ch;
}

}  // namespace

MappedKey MapKey(int qt_key, Qt::KeyboardModifiers modifiers, const QString& text) {
  const bool keypad = modifiers.testFlag(Qt::KeypadModifier);
  const Modifiers mods{.shift = modifiers.testFlag(Qt::ShiftModifier),
                       .ctrl = modifiers.testFlag(Qt::ControlModifier),
                       .alt = modifiers.testFlag(Qt::AltModifier)};
  return {LookUp(qt_key, keypad, mods), TypedChar(text, mods, keypad)};
}

MappedKey MapKeyEvent(const QKeyEvent& event) { return MapKey(event.key(), event.modifiers(), event.text()); }

}  // namespace korvanel
