#pragma once

// The filter expression ("0-100,^99;200-*;*") and the negation colour
// ("0" or "16,128,128") of the colour filter.

#include <cstdint>
#include <string>
#include <string_view>

#include "image/filter_tables.h"

namespace korvanel {

// The first parse error: 1 wrong component count in the expression, 2 a bad
// token (component and token numbered from 1), 3 wrong count in the
// negation colour, 4 a bad negation value (component from 1), 5 and 6 an
// expression or a negation colour longer than kMaxFilterTextLength.
inline constexpr size_t kMaxFilterTextLength = 16384;
struct FilterParseState {
  uint32_t code = 0;
  uint32_t component = 0;
  uint32_t token = 0;
};

// Resets and fills the tables for an image of `bits` and `components`.
bool ParseFilterExpression(std::string_view text, uint32_t bits, uint32_t components,
                           FilterTables& tables, FilterParseState& state);
// Fills tables.negation; the tables' bits give the largest allowed value.
bool ParseNegationColor(std::string_view text, FilterTables& tables, FilterParseState& state);

// The dialog's title and text for a parse error.
const char* FilterErrorTitle(const FilterParseState& state);
std::string FilterErrorText(const FilterParseState& state);

}  // namespace korvanel
