// One format entry, as a formats-file line and as a typed expression; an
// expression that parses must print as text that parses back to itself.
#include <optional>
#include <string>

#include "image/format_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  korvanel::CNullLineSink log;
  korvanel::FormatGroup group;
  korvanel::ParseFormatLine(text, 1, group, log);
  korvanel::DirectFormat direct;
  korvanel::SetDirectExpression(text, 640, 480, direct, log);
  if (const std::optional<korvanel::FormatExpression> parsed = korvanel::ParseFormatExpression(text, 1, log)) {
    const std::string plain = parsed->ToText();
    const std::optional<korvanel::FormatExpression> back = korvanel::ParseFormatExpression(plain, 1, log);
    if (!back || back->ToText() != plain || back->components != parsed->components ||
        back->color_kind != parsed->color_kind || back->bpp != parsed->bpp) {
      __builtin_trap();
    }
  }
  return 0;
}
