#pragma once

// Division of the image area into panels: one panel in single view and
// layer mode, N equal panels 20 pixels apart side by side in compare mode,
// each with its tab above it. Windows too small for the margins give empty
// panels, never a failure.

#include <cstdint>
#include <vector>

#include "ui/model/geometry.h"

namespace korvanel {

enum class LayoutMode : uint8_t { Single, SideBySide, Layer };

inline constexpr int32_t kPanelLeftMargin = 10;
inline constexpr int32_t kPanelGap = 20;
inline constexpr int32_t kTabStripTop = 4;
inline constexpr int32_t kTabStripMaxHeight = 45;

struct PanelLayout {
  ScreenRect panel;
  ScreenRect tab;  // empty without tabs
};

struct Layout {
  std::vector<PanelLayout> panels;
};

// `panel_count` is the party size in side-by-side mode and ignored
// otherwise; `tabs` asks for the tab strip.
Layout ComputeLayout(const ScreenRect& area, LayoutMode mode, size_t panel_count, bool tabs);

}  // namespace korvanel
