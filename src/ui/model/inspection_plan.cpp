#include "ui/model/inspection_plan.h"

#include <algorithm>

namespace korvanel {

ScreenPoint BlockCentre(const ScreenRect& block) {
  return {block.left + (block.Width() - 1) / 2, block.top + (block.Height() - 1) / 2};
}

ScreenRect MarkerRing(const ScreenRect& block) {
  const int32_t size = std::max({block.Width() + 2, block.Height() + 2, kMarkerMinSize});
  const ScreenPoint c = BlockCentre(block);
  const int32_t half = size / 2;
  return {c.x - half, c.y - half, c.x - half + size - 1, c.y - half + size - 1};
}

}  // namespace korvanel
