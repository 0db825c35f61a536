#include "ui/model/roi_editor.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace korvanel {

namespace {

uint32_t Coordinate(int64_t v) {
  return static_cast<uint32_t>(std::clamp<int64_t>(v, 0, UINT32_MAX));
}

bool Near(int32_t value, int32_t line) { return std::abs(value - line) <= kRoiEdgeReach; }

}  // namespace

Rect RoiFromCorners(PixelPoint a, PixelPoint b) {
  return {Coordinate(std::min(a.x, b.x)), Coordinate(std::min(a.y, b.y)),
          Coordinate(std::max(a.x, b.x)), Coordinate(std::max(a.y, b.y))};
}

RoiEdges RoiEdgesAt(const ScreenRect& frame, ScreenPoint p) {
  if (frame.Empty()) return {};
  const bool within_x = p.x >= frame.left - kRoiEdgeReach && p.x <= frame.right + kRoiEdgeReach;
  const bool within_y = p.y >= frame.top - kRoiEdgeReach && p.y <= frame.bottom + kRoiEdgeReach;
  if (!within_x || !within_y) return {};
  RoiEdges edges{Near(p.x, frame.left), Near(p.y, frame.top), Near(p.x, frame.right),
                 Near(p.y, frame.bottom)};
  // A frame thinner than the reach: the nearer line wins.
  if (edges.left && edges.right) {
    (std::abs(p.x - frame.left) <= std::abs(p.x - frame.right) ? edges.right : edges.left) = false;
  }
  if (edges.top && edges.bottom) {
    (std::abs(p.y - frame.top) <= std::abs(p.y - frame.bottom) ? edges.bottom : edges.top) = false;
  }
  return edges;
}

Rect DragRoiEdges(const Rect& roi, RoiEdges& edges, PixelPoint pixel) {
  PixelPoint a{roi.min_x, roi.min_y};
  PixelPoint b{roi.max_x, roi.max_y};
  if (edges.left) a.x = pixel.x;
  if (edges.right) b.x = pixel.x;
  if (edges.top) a.y = pixel.y;
  if (edges.bottom) b.y = pixel.y;
  if (a.x > b.x) std::swap(edges.left, edges.right);
  if (a.y > b.y) std::swap(edges.top, edges.bottom);
  return RoiFromCorners(a, b);
}

std::optional<Rect> CRoiEditor::Click(PixelPoint pixel) {
  if (!anchor_) {
    anchor_ = pixel;
    return std::nullopt;
  }
  const Rect roi = RoiFromCorners(*anchor_, pixel);
  anchor_.reset();
  return roi;
}

void CRoiEditor::Reset() {
  anchor_.reset();
  drag_ = {};
}

}  // namespace korvanel
