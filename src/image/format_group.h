#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "image/format_expression.h"

namespace korvanel {

// One rule of the formats file: a file-name pattern, how to find width and
// height, and the format expressions to try in order. Group 0 of the rule list
// is reserved for the expression typed by the user.
struct FormatGroup {
  std::string file_pattern = ".*";
  uint32_t file_pattern_line = 0;

  // With a regex the dimension comes from capture group `*_group`; without one
  // the fixed `*_value` is used. The direct group uses -1 as group number.
  std::string width_regex;
  int32_t width_group = 1;
  uint32_t width_value = 0;
  uint32_t width_line = 0;
  std::string height_regex;
  int32_t height_group = 1;
  uint32_t height_value = 0;
  uint32_t height_line = 0;

  std::vector<FormatExpression> formats;
};

}  // namespace korvanel
