#pragma once

// What the mouse can hit in the last frame, apart from the frame plan that
// the renderer draws: per drawn panel its image, tab, close box and
// histogram box.

#include <cstddef>
#include <string>
#include <vector>

#include "ui/model/geometry.h"
#include "ui/model/histogram_overlay.h"

namespace korvanel {

struct TabArea {
  ScreenRect rect;       // empty: no tab
  ScreenRect close_box;  // top-left of the tab
  std::string text;      // the caption as drawn (its width picks the font)
};

struct PanelHit {
  size_t image_index = 0;
  TabArea tab;
  bool histogram_shown = false;
  HistogramBoxLayout histogram;
};

using HitMap = std::vector<PanelHit>;

}  // namespace korvanel
