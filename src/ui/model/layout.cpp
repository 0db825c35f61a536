#include "ui/model/layout.h"

#include <algorithm>

namespace korvanel {

namespace {

inline constexpr int32_t kMinTabArea = 12;
inline constexpr int32_t kSingleBottomMargin = 11;
inline constexpr int32_t kCompareBottomMargin = 20;

// The tab strip's rows, or an empty rectangle without tabs.
ScreenRect TabStrip(const ScreenRect& area, bool tabs) {
  if (!tabs || area.Height() < kMinTabArea) return {area.left, area.top, area.left - 1, area.top - 1};
  const int32_t height = std::min(area.Height() - 11, kTabStripMaxHeight);
  const int32_t top = area.top + kTabStripTop;
  return {area.left, top, area.right, top + height - 1};
}

PanelLayout MakePanel(int32_t left, int32_t right, const ScreenRect& strip, int32_t top,
                      int32_t bottom) {
  PanelLayout panel;
  panel.panel = {left, top, right, bottom};
  panel.tab = strip.Empty() ? ScreenRect{left, strip.top, left - 1, strip.top - 1}
                            : ScreenRect{left, strip.top, right, strip.bottom};
  return panel;
}

}  // namespace

Layout ComputeLayout(const ScreenRect& area, LayoutMode mode, size_t panel_count, bool tabs) {
  Layout layout;
  const ScreenRect strip = TabStrip(area, tabs);
  const int32_t top = strip.Empty() ? area.top : strip.bottom + 1;
  const int32_t left = area.left + kPanelLeftMargin;
  // One panel keeps the same 10-pixel margin on the right as on the left,
  // where side-by-side panels end too.
  if (mode != LayoutMode::SideBySide) {
    layout.panels.push_back(MakePanel(left, area.right - kPanelLeftMargin, strip, top,
                                      area.bottom - kSingleBottomMargin));
    return layout;
  }
  const auto n = static_cast<int32_t>(std::min<size_t>(panel_count, 64));
  if (n == 0) return layout;
  const int32_t width = (area.Width() - kPanelGap * n + 1) / n;
  for (int32_t i = 0; i < n; ++i) {
    const int32_t panel_left = left + i * (width + kPanelGap);
    layout.panels.push_back(MakePanel(panel_left, panel_left + width - 1, strip, top,
                                      area.bottom - kCompareBottomMargin));
  }
  return layout;
}

}  // namespace korvanel
