// The configuration reader over arbitrary lines.
#include <string>
#include <vector>

#include "app/config_reader.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  std::vector<std::string> lines;
  size_t start = 0;
  while (start <= text.size()) {
    const size_t end = text.find('\n', start);
    lines.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
    if (end == std::string::npos) break;
    start = end + 1;
  }
  korvanel::ConfigValues values;
  std::vector<std::string> report = korvanel::ResetConfigValues(values, "/tmp");
  korvanel::ApplyConfigLines(lines, values, report);
  return 0;
}
