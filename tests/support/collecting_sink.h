#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "image/line_sink.h"

namespace korvanel::test {

// Keeps every line; entry titles are kept as "## <title>" so tests can check
// where sections open.
class CollectingSink : public ILineSink {
 public:
  void BeginEntry(std::string_view title) override { lines.push_back("## " + std::string(title)); }
  void AddLine(std::string_view line) override { lines.emplace_back(line); }
  std::vector<std::string> lines;
};

}  // namespace korvanel::test
