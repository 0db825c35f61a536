#pragma once

// The viewer's key vocabulary, free of any toolkit. Physical keys carry the
// numbering of the Windows virtual-key codes the key bindings were first
// written against, so "the range Tab .. Minus" is a plain numeric range: keys
// such as Backspace and "`" fall outside it and never reach the key table.

#include <cstdint>

namespace korvanel {

enum class Key : uint16_t {
  Unknown = 0,
  Backspace = 0x08,
  Tab = 0x09,
  Return = 0x0D,
  Shift = 0x10,
  Control = 0x11,
  Alt = 0x12,
  Escape = 0x1B,
  Space = 0x20,
  PageUp = 0x21,
  PageDown = 0x22,
  End = 0x23,
  Home = 0x24,
  Left = 0x25,
  Up = 0x26,
  Right = 0x27,
  Down = 0x28,
  Insert = 0x2D,
  Delete = 0x2E,
  Digit0 = 0x30, Digit1, Digit2, Digit3, Digit4, Digit5, Digit6, Digit7, Digit8, Digit9,
  A = 0x41, B, C, D, E, F, G, H, I, J, K, L, M, N, O, P, Q, R, S, T, U, V, W, X, Y, Z,
  Keypad0 = 0x60, Keypad1, Keypad2, Keypad3, Keypad4, Keypad5, Keypad6, Keypad7, Keypad8, Keypad9,
  KeypadMultiply = 0x6A,
  KeypadPlus = 0x6B,
  KeypadMinus = 0x6D,
  KeypadDecimal = 0x6E,
  KeypadDivide = 0x6F,
  F1 = 0x70, F2, F3, F4, F5, F6, F7, F8, F9, F10, F11, F12,
  Semicolon = 0xBA,
  Equal = 0xBB,
  Comma = 0xBC,
  Minus = 0xBD,
  Period = 0xBE,
  Slash = 0xBF,
  Backtick = 0xC0,
};

inline constexpr Key kFirstViewKey = Key::Tab;
inline constexpr Key kLastViewKey = Key::Minus;

// Keys outside Tab .. Minus are ignored by the key-down path.
constexpr bool KeyInViewRange(Key key) { return key >= kFirstViewKey && key <= kLastViewKey; }

struct Modifiers {
  bool shift = false;
  bool ctrl = false;
  bool alt = false;
  friend bool operator==(const Modifiers&, const Modifiers&) = default;
};

inline constexpr Modifiers kNoModifiers{};
inline constexpr Modifiers kShift{.shift = true};
inline constexpr Modifiers kCtrl{.ctrl = true};

// One key-down: the physical key and the modifiers held at that moment.
struct KeyInput {
  Key key = Key::Unknown;
  Modifiers mods;
  friend bool operator==(const KeyInput&, const KeyInput&) = default;
};

}  // namespace korvanel
