#pragma once

// The fixed tables of the expression language: binary operators with their
// levels, functions and prefix operators with their arities, the character
// sets the parser scans with, and the error texts.

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace korvanel {

enum class OperatorId : uint32_t {
  kLess = 0,
  kLessEqual = 1,
  kGreater = 2,
  kGreaterEqual = 3,
  kEqual = 4,
  kNotEqual = 5,
  kLogicalOr = 6,
  kLogicalXor = 7,
  kLogicalAnd = 8,
  kBitOr = 9,
  kBitXor = 10,
  kBitAnd = 11,
  kShiftRight = 12,
  kShiftLeft = 13,
  kAdd = 14,
  kMultiply = 15,
  kDivide = 16,
  kRemainder = 17,
  kPower = 18,
  kNone = 19,
};

enum class FunctionId : uint32_t {
  kSin = 0,
  kCos = 1,
  kTan = 2,
  kAtan2 = 3,
  kRad = 4,
  kDeg = 5,
  kFact = 6,
  kAbs = 7,
  kSign = 8,
  kBool = 9,
  kComplement = 10,
  kNegate = 11,
  kNot = 12,
  kBits = 13,
  kExp = 14,
  kLog = 15,
  kLog10 = 16,
  kLogb = 17,
  kRound = 18,
  kCeil = 19,
  kFloor = 20,
  kSqrt = 21,
  kDist = 22,
  kDouble = 23,
  kMin = 24,
  kMax = 25,
  kBinom = 26,
  kNone = 27,
};

// A lower level binds more loosely.
struct BinaryOperatorRow {
  std::string_view text;
  OperatorId id;
  uint32_t level;
};

struct FunctionRow {
  std::string_view name;
  FunctionId id;
  uint32_t arity;
  bool prefix;  // one-character prefix operator (`-`, `!`, `~`)
};

std::span<const BinaryOperatorRow> BinaryOperatorTable();
std::span<const FunctionRow> FunctionTable();

// Exact, case-sensitive lookups; nullptr when the text is not in the table.
const BinaryOperatorRow* FindBinaryOperator(std::string_view text);
const FunctionRow* FindFunction(std::string_view name);
const FunctionRow& FunctionRowOf(FunctionId id);

// Characters that make up binary operator runs.
inline constexpr std::string_view kOperatorChars = "<>!=|&^+*/%";
// Characters of the minus set (prefix negation, rewritten before parsing).
inline constexpr std::string_view kMinusChars = "-";

namespace expr_detail {
constexpr std::array<bool, 256> MakeCharSet(std::string_view chars) {
  std::array<bool, 256> set{};
  for (char c : chars) set[static_cast<unsigned char>(c)] = true;
  return set;
}
inline constexpr std::array<bool, 256> kOperatorCharSet = MakeCharSet(kOperatorChars);
}  // namespace expr_detail

inline bool IsOperatorChar(char c) {
  return expr_detail::kOperatorCharSet[static_cast<unsigned char>(c)];
}
inline bool IsMinusChar(char c) {
  return kMinusChars.find(c) != std::string_view::npos;
}
inline bool IsAsciiLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace korvanel
