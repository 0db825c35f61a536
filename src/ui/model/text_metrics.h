#pragma once

// Text measurement in device pixels for the model's layout decisions (does a
// value fit in a zoomed pixel, how wide is a tab). The Qt shell answers from
// QFontMetrics; tests answer with fixed widths.

#include <cstdint>
#include <string_view>

namespace korvanel {

enum class FontRole : uint8_t {
  Tab,
  TabSmall,
  Ruler,
  RulerSmall,
  Values,
  Text,
  Histogram,       // statistics lines
  HistogramLabel,  // channel names, emphasised
  HelpLarge,       // the help overlay's first choice
  HelpSmall,       // the help overlay when a page does not fit
};

class ITextMetrics {
 public:
  virtual ~ITextMetrics() = default;
  virtual int32_t Width(FontRole role, std::string_view text) const = 0;
  virtual int32_t Height(FontRole role) const = 0;
};

}  // namespace korvanel
