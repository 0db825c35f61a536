#pragma once

// Where a panel's ruler marks go and which image coordinate each labels.

#include <cstdint>
#include <vector>

#include "ui/model/frame_plan.h"

namespace korvanel {

// One ruler mark: where it is on screen along its axis and the image
// coordinate it labels.
struct RulerMark {
  int32_t screen = 0;
  int64_t coordinate = 0;
};

struct PanelRulerMarks {
  std::vector<RulerMark> x;
  std::vector<RulerMark> y;
};

// The marks of a panel with a rendition. Screen-pixel spacings are
// multiplied by `screen_scale` (the device pixel ratio, at least 1).
PanelRulerMarks RulerMarksOf(const PanelPlan& panel, int32_t screen_scale);

}  // namespace korvanel
