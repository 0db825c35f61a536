#include <gtest/gtest.h>

#include <QKeyEvent>
#include <QTest>

#include "ui/qt/key_map.h"

namespace korvanel {
namespace {

constexpr Modifiers kNone{};
constexpr Modifiers kShiftOnly{.shift = true};
constexpr Modifiers kCtrlOnly{.ctrl = true};

struct Row {
  const char* what;
  int qt_key;
  Qt::KeyboardModifiers modifiers;
  const char* text;
  KeyInput expected;
  std::optional<char32_t> typed;
};

// Each key in the form a real X11 server sends it and in the form QTest
// synthesises it: both must reach the same physical key and character.
const Row kRows[] = {
    {"X11 Shift+Tab", Qt::Key_Backtab, Qt::ShiftModifier, "", {Key::Tab, kShiftOnly}, std::nullopt},
    {"QTest Shift+Tab", Qt::Key_Tab, Qt::ShiftModifier, "\t", {Key::Tab, kShiftOnly}, U'\t'},
    {"Tab", Qt::Key_Tab, Qt::NoModifier, "\t", {Key::Tab, kNone}, U'\t'},
    {"X11 Shift+=", Qt::Key_Plus, Qt::ShiftModifier, "+", {Key::Equal, kShiftOnly}, U'+'},
    {"QTest Shift+=", Qt::Key_Equal, Qt::ShiftModifier, "=", {Key::Equal, kShiftOnly}, U'='},
    {"Ctrl+=", Qt::Key_Equal, Qt::ControlModifier, "=", {Key::Equal, kCtrlOnly}, std::nullopt},
    {"keypad +", Qt::Key_Plus, Qt::KeypadModifier, "+", {Key::KeypadPlus, kNone}, U'+'},
    {"keypad -", Qt::Key_Minus, Qt::KeypadModifier, "-", {Key::KeypadMinus, kNone}, U'-'},
    {"keypad *", Qt::Key_Asterisk, Qt::KeypadModifier, "*", {Key::KeypadMultiply, kNone}, std::nullopt},
    {"keypad 3", Qt::Key_3, Qt::KeypadModifier, "3", {Key::Keypad3, kNone}, U'3'},
    {"main -", Qt::Key_Minus, Qt::NoModifier, "-", {Key::Minus, kNone}, U'-'},
    {"X11 Ctrl+V", Qt::Key_V, Qt::ControlModifier, "\x16", {Key::V, kCtrlOnly}, std::nullopt},
    {"QTest Ctrl+V", Qt::Key_V, Qt::ControlModifier, "v", {Key::V, kCtrlOnly}, std::nullopt},
    {"v", Qt::Key_V, Qt::NoModifier, "v", {Key::V, kNone}, U'v'},
    {"Shift+V", Qt::Key_V, Qt::ShiftModifier, "V", {Key::V, kShiftOnly}, U'V'},
    {"Shift+`", Qt::Key_AsciiTilde, Qt::ShiftModifier, "~", {Key::Unknown, kShiftOnly}, U'~'},
    {"`", Qt::Key_QuoteLeft, Qt::NoModifier, "`", {Key::Backtick, kNone}, U'`'},
    {"Shift+1", Qt::Key_Exclam, Qt::ShiftModifier, "!", {Key::Unknown, kShiftOnly}, U'!'},
    {"Shift+0", Qt::Key_ParenRight, Qt::ShiftModifier, ")", {Key::Unknown, kShiftOnly}, U')'},
    {"Shift+8", Qt::Key_Asterisk, Qt::ShiftModifier, "*", {Key::Unknown, kShiftOnly}, U'*'},
    {"0", Qt::Key_0, Qt::NoModifier, "0", {Key::Digit0, kNone}, U'0'},
    {"Backspace", Qt::Key_Backspace, Qt::NoModifier, "\b", {Key::Backspace, kNone}, U'\b'},
    {"Esc", Qt::Key_Escape, Qt::NoModifier, "\x1b", {Key::Escape, kNone}, std::nullopt},
    {"Return", Qt::Key_Return, Qt::NoModifier, "\r", {Key::Return, kNone}, std::nullopt},
    {"F1", Qt::Key_F1, Qt::NoModifier, "", {Key::F1, kNone}, std::nullopt},
    {"F12", Qt::Key_F12, Qt::NoModifier, "", {Key::F12, kNone}, std::nullopt},
    {"Shift alone", Qt::Key_Shift, Qt::ShiftModifier, "", {Key::Shift, kShiftOnly}, std::nullopt},
    {"Ctrl alone", Qt::Key_Control, Qt::ControlModifier, "", {Key::Control, kCtrlOnly}, std::nullopt},
    {"Z", Qt::Key_Z, Qt::NoModifier, "z", {Key::Z, kNone}, U'z'},
    {"Right", Qt::Key_Right, Qt::NoModifier, "", {Key::Right, kNone}, std::nullopt},
    {"media key", Qt::Key_VolumeUp, Qt::NoModifier, "", {Key::Unknown, kNone}, std::nullopt},
    {"Alt+F is the menu's", Qt::Key_F, Qt::AltModifier, "f", {Key::F, Modifiers{.alt = true}}, std::nullopt},
    {"accented letter", Qt::Key_Eacute, Qt::NoModifier, "\xc3\xa9", {Key::Unknown, kNone}, U'\u00e9'},
};

TEST(KeyMap, X11AndQTestFormsReachTheSameKeyAndCharacter) {
  for (const Row& row : kRows) {
    const QKeyEvent event(QEvent::KeyPress, row.qt_key, row.modifiers, QString::fromUtf8(row.text));
    const MappedKey mapped = MapKeyEvent(event);
    EXPECT_EQ(mapped.input.key, row.expected.key) << row.what;
    // Qt flips the modifier of a modifier key's own event; nothing binds them.
    const bool modifier_key = row.expected.key == Key::Shift || row.expected.key == Key::Control;
    if (!modifier_key) {
      EXPECT_EQ(mapped.input.mods, row.expected.mods) << row.what;
    }
    EXPECT_EQ(mapped.typed, row.typed) << row.what;
  }
}

}  // namespace
}  // namespace korvanel
