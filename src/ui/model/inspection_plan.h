#pragma once

// The overlay items of pixel inspection in one frame, in screen pixels: ROI
// frames, tracking lines, the grid's tracked-pixel outline, find marks and
// the short-lived jump and find markers, and the directive line.

#include <optional>
#include <vector>

#include "app/config_values.h"
#include "ui/model/geometry.h"

namespace korvanel {

struct MarkPlan {
  ScreenRect rect;  // the marked pixel's block
  Rgb color;
};

struct PanelInspectionPlan {
  ScreenRect roi_frame;  // empty: no active ROI
  // The tracked pixel's block: tracking lines run through its centre across
  // the picture; with `outline` its edge is drawn too.
  std::optional<ScreenRect> tracked;
  bool tracking_lines = false;
  bool outline = false;
  std::vector<MarkPlan> marks;    // the image's find marks
  std::vector<MarkPlan> markers;  // jump (white) and find (yellow) markers
};

struct DirectivePlan {
  bool show = false;
  ScreenPoint from;  // the ROI anchor's block centre
  ScreenPoint to;    // the cursor
};

// A marker's ring around a block: at least this many screen pixels wide, so
// it shows at any ZF.
inline constexpr int32_t kMarkerMinSize = 9;

ScreenRect MarkerRing(const ScreenRect& block);
ScreenPoint BlockCentre(const ScreenRect& block);

}  // namespace korvanel
