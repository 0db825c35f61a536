#include "expr/expr_tables.h"

#include <array>

#include "expr/expr_value.h"

namespace korvanel {
namespace {

// Order matters only for readers: lookups are by exact text.
constexpr std::array<BinaryOperatorRow, 19> kBinaryOperators = {{
    {"||", OperatorId::kLogicalOr, 0},    {"^^", OperatorId::kLogicalXor, 0},
    {"&&", OperatorId::kLogicalAnd, 0},   {"<", OperatorId::kLess, 1},
    {"<=", OperatorId::kLessEqual, 1},    {">", OperatorId::kGreater, 1},
    {">=", OperatorId::kGreaterEqual, 1}, {"==", OperatorId::kEqual, 1},
    {"!=", OperatorId::kNotEqual, 1},     {"|", OperatorId::kBitOr, 2},
    {"^|", OperatorId::kBitXor, 2},       {"&", OperatorId::kBitAnd, 2},
    {">>", OperatorId::kShiftRight, 2},   {"<<", OperatorId::kShiftLeft, 2},
    {"+", OperatorId::kAdd, 3},           {"*", OperatorId::kMultiply, 4},
    {"/", OperatorId::kDivide, 4},        {"%", OperatorId::kRemainder, 4},
    {"^", OperatorId::kPower, 5},
}};

constexpr std::array<FunctionRow, 27> kFunctions = {{
    {"-", FunctionId::kNegate, 1, true},       {"!", FunctionId::kNot, 1, true},
    {"~", FunctionId::kComplement, 1, true},   {"sin", FunctionId::kSin, 1, false},
    {"cos", FunctionId::kCos, 1, false},       {"tan", FunctionId::kTan, 1, false},
    {"atan2", FunctionId::kAtan2, 2, false},   {"rad", FunctionId::kRad, 1, false},
    {"deg", FunctionId::kDeg, 1, false},       {"fact", FunctionId::kFact, 1, false},
    {"abs", FunctionId::kAbs, 1, false},       {"sign", FunctionId::kSign, 1, false},
    {"bool", FunctionId::kBool, 1, false},     {"bits", FunctionId::kBits, 1, false},
    {"exp", FunctionId::kExp, 1, false},       {"log", FunctionId::kLog, 1, false},
    {"log10", FunctionId::kLog10, 1, false},   {"logb", FunctionId::kLogb, 2, false},
    {"round", FunctionId::kRound, 1, false},   {"ceil", FunctionId::kCeil, 1, false},
    {"floor", FunctionId::kFloor, 1, false},   {"sqrt", FunctionId::kSqrt, 1, false},
    {"dist", FunctionId::kDist, 2, false},     {"min", FunctionId::kMin, 2, false},
    {"max", FunctionId::kMax, 2, false},       {"binom", FunctionId::kBinom, 2, false},
    {"double", FunctionId::kDouble, 1, false},
}};

constexpr std::array<const char*, 11> kErrorTexts = {
    "Success",
    "Extra open parenthesis",
    "Unexpected close parenthesis",
    "Unknown function",
    "Unknown variable",
    "Illegal operator",
    "Divide by zero",
    "Math error",
    "Math domain error",
    "Math range error",
    "Function argument error",
};

// Function rows indexed by id, for the evaluation loop.
constexpr std::array<const FunctionRow*, 27> IndexFunctionsById() {
  std::array<const FunctionRow*, 27> out{};
  for (const FunctionRow& row : kFunctions) out[static_cast<uint32_t>(row.id)] = &row;
  return out;
}
constexpr std::array<const FunctionRow*, 27> kFunctionsById = IndexFunctionsById();

}  // namespace

std::span<const BinaryOperatorRow> BinaryOperatorTable() {
  return kBinaryOperators;
}
std::span<const FunctionRow> FunctionTable() {
  return kFunctions;
}

const BinaryOperatorRow* FindBinaryOperator(std::string_view text) {
  for (const BinaryOperatorRow& row : kBinaryOperators) {
    if (row.text == text) return &row;
  }
  return nullptr;
}

const FunctionRow* FindFunction(std::string_view name) {
  for (const FunctionRow& row : kFunctions) {
    if (row.name == name) return &row;
  }
  return nullptr;
}

const FunctionRow& FunctionRowOf(FunctionId id) {
  return *kFunctionsById[static_cast<uint32_t>(id)];
}

const char* ExprErrorText(uint32_t code) {
  return code < kErrorTexts.size() ? kErrorTexts[code] : "Unknown error";
}

}  // namespace korvanel
