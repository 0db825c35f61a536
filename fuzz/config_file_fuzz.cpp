// The configuration reader over arbitrary lines.
#include <string>
#include <vector>

#include "app/config_reader.h"
#include "image/text_util.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::vector<std::string> lines = korvanel::SplitKeepingEmpty(text, "\n");
  korvanel::ConfigValues values;
  std::vector<std::string> report = korvanel::ResetConfigValues(values, "/tmp");
  korvanel::ApplyConfigLines(lines, values, report);
  return 0;
}
