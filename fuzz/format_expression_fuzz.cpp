// One format entry, as a formats-file line and as a typed expression.
#include <string>

#include "image/format_parser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  korvanel::CNullLineSink log;
  korvanel::FormatGroup group;
  korvanel::ParseFormatLine(text, 1, group, log);
  korvanel::DirectFormat direct;
  korvanel::SetDirectExpression(text, 640, 480, direct, log);
  return 0;
}
