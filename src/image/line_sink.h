#pragma once

#include <string_view>

namespace korvanel {

// Where parsers and loaders write their one-line reports. The format-load log
// implements it; tests collect the lines; a null sink drops them.
class ILineSink {
 public:
  virtual ~ILineSink() = default;
  // Opens a titled section (a numbered entry in a log file).
  virtual void BeginEntry(std::string_view title) = 0;
  virtual void AddLine(std::string_view line) = 0;
  // Hands pending lines on (a log file writes them out); no-op by default.
  virtual void Flush() {}
};

class CNullLineSink final : public ILineSink {
 public:
  void BeginEntry(std::string_view) override {}
  void AddLine(std::string_view) override {}
};

}  // namespace korvanel
