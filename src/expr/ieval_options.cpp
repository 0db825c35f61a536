#include "expr/ieval_options.h"

#include <cstdlib>

#include "image/text_util.h"

namespace korvanel {

bool ParseOutOfRange(std::string_view text, uint32_t bits, std::array<uint32_t, 3>& values,
                     std::string& error) {
  std::vector<std::string> parts;
  size_t start = 0;
  for (;;) {
    const size_t semicolon = text.find(';', start);
    parts.emplace_back(TrimAscii(text.substr(start, semicolon - start)));
    if (semicolon == std::string_view::npos) break;
    start = semicolon + 1;
  }
  if (parts.size() != 1 && parts.size() != 3) {
    error = "Must enter 1 or 3 components";
    return false;
  }
  const uint64_t max = bits >= 32 ? 0xFFFFFFFFull : (uint64_t{1} << bits) - 1;
  for (size_t i = 0; i < 3; ++i) {
    const std::string& part = parts[parts.size() == 1 ? 0 : i];
    char* end = nullptr;
    const long long value = part.empty() ? -1 : std::strtoll(part.c_str(), &end, 0);
    if (part.empty() || *end != '\0' || value < 0 || static_cast<uint64_t>(value) > max) {
      error = StrFormat("'%s' for comp %d isn't valid number or bpp out-of-range", part.c_str(),
                        static_cast<int>(i + 1));
      return false;
    }
    values[i] = static_cast<uint32_t>(value);
  }
  return true;
}

}  // namespace korvanel
