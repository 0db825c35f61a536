#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "image/format_group.h"
#include "image/line_sink.h"

namespace korvanel {

// Parses one `format` entry ("[regex] expression") with line number `line`.
// On success appends one FormatExpression to `group`; on failure writes one
// "Parse error [#N]: ..." line to `log` and leaves `group` as it was.
bool ParseFormatLine(std::string_view entry, uint32_t line, FormatGroup& group, ILineSink& log);

// Parses an expression without the regex ("P,Y,8", "A,-1024,I,YUYV,-16"),
// as ParseFormatLine does behind the regex; nothing on failure, after one
// "Parse error [#N]: ..." line in `log`.
std::optional<FormatExpression> ParseFormatExpression(std::string_view text, uint32_t line,
                                                      ILineSink& log);

// The expression typed by the user with a fixed size, kept as rule group 0.
struct DirectFormat {
  bool in_force = false;
  FormatGroup group;
};

// A size of 0 switches the direct expression off (and succeeds). Otherwise the
// upper-cased text replaces the group's single format.
bool SetDirectExpression(std::string_view text, uint32_t width, uint32_t height,
                         DirectFormat& direct, ILineSink& log);

}  // namespace korvanel
