#pragma once

// Choosing and resizing a region of interest with the mouse. The first click
// sets the anchor, the second the opposite corner; hovering the frame of an
// active ROI offers resizing its sides and corners, and a drag moves them.
// The editor only decides; the controller applies the ROI to the images.

#include <cstdint>
#include <optional>

#include "image/region.h"
#include "ui/model/geometry.h"
#include "ui/model/pixel_mapping.h"

namespace korvanel {

// The ROI spanned by two corners in any order, normalised.
Rect RoiFromCorners(PixelPoint a, PixelPoint b);

// The sides of a frame the cursor is on (a corner is two sides).
struct RoiEdges {
  bool left = false;
  bool top = false;
  bool right = false;
  bool bottom = false;

  bool Any() const { return left || top || right || bottom; }
  friend bool operator==(const RoiEdges&, const RoiEdges&) = default;
};

// Screen pixels either side of a frame line that still count as on it.
inline constexpr int32_t kRoiEdgeReach = 3;

// The sides of `frame` (the ROI's screen rectangle) within reach of `p`.
// Inside the frame away from its lines, or outside it, none.
RoiEdges RoiEdgesAt(const ScreenRect& frame, ScreenPoint p);

// The ROI after its `edges` were dragged to `pixel`: the dragged sides take
// the pixel's column or row. A side dragged past its opposite swaps with it,
// so the ROI stays normalised and `edges` then names the side now dragged.
Rect DragRoiEdges(const Rect& roi, RoiEdges& edges, PixelPoint pixel);

class CRoiEditor {
 public:
  // A left click on `pixel`: the anchor, or the second corner (returned).
  std::optional<Rect> Click(PixelPoint pixel);
  // Forgets a pending anchor and an edge drag.
  void Reset();
  const std::optional<PixelPoint>& Anchor() const { return anchor_; }

  void BeginDrag(RoiEdges edges) { drag_ = edges; }
  void EndDrag() { drag_ = {}; }
  bool Dragging() const { return drag_.Any(); }
  // The dragged sides moved to `pixel`.
  Rect Drag(const Rect& roi, PixelPoint pixel) { return DragRoiEdges(roi, drag_, pixel); }

 private:
  std::optional<PixelPoint> anchor_;
  RoiEdges drag_;
};

}  // namespace korvanel
