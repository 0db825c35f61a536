#include "app/summary_line.h"

#include "image/text_util.h"

namespace korvanel {

std::string MakeSummaryLine(uint64_t data_bytes, uint32_t width, uint32_t height,
                            std::string_view name) {
  const std::string n(name);
  if (data_bytes < 50000) {
    return StrFormat("%llu B | %s", static_cast<unsigned long long>(data_bytes), n.c_str());
  }
  if (data_bytes < 0x100000) {
    return StrFormat("%6.2lf KB | %s", static_cast<double>(data_bytes) / 1024.0, n.c_str());
  }
  const uint64_t megapixels = uint64_t{width} * height / 1000000;
  return StrFormat("%6.2lf MB (~%llu MP) | %s", static_cast<double>(data_bytes) / 1048576.0,
                   static_cast<unsigned long long>(megapixels), n.c_str());
}

}  // namespace korvanel
