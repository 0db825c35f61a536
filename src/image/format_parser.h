#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "image/format_group.h"
#include "image/format_names.h"
#include "image/layout_attributes.h"
#include "image/line_sink.h"

namespace korvanel {

// The words the grammar knows beyond its own tokens: layout attributes and
// well-known format names. With both empty the parser reads exactly the
// grammar of plain expressions (the fuzz target compares the two).
struct FormatVocabulary {
  std::span<const LayoutAttribute> attributes;
  std::span<const FormatName> names;
};
// Every attribute and name this build knows; what every caller uses.
FormatVocabulary FullVocabulary();

// Parses one `format` entry ("[regex] expression") with line number `line`.
// On success appends one FormatExpression to `group`; on failure writes one
// "Parse error [#N]: ..." line to `log` and leaves `group` as it was.
bool ParseFormatLine(std::string_view entry, uint32_t line, FormatGroup& group, ILineSink& log,
                     const FormatVocabulary& vocabulary = FullVocabulary());

// Parses an expression without the regex ("P,Y,8", "A,-1024,I,YUYV,-16"),
// as ParseFormatLine does behind the regex; nothing on failure, after one
// "Parse error [#N]: ..." line in `log`.
std::optional<FormatExpression> ParseFormatExpression(std::string_view text, uint32_t line,
                                                      ILineSink& log,
                                                      const FormatVocabulary& vocabulary = FullVocabulary());

// The expression typed by the user with a fixed size, kept as rule group 0.
struct DirectFormat {
  bool in_force = false;
  FormatGroup group;
};

// A size of 0 switches the direct expression off (and succeeds). Otherwise the
// upper-cased text replaces the group's single format.
bool SetDirectExpression(std::string_view text, uint32_t width, uint32_t height,
                         DirectFormat& direct, ILineSink& log,
                         const FormatVocabulary& vocabulary = FullVocabulary());

}  // namespace korvanel
