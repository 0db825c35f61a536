#include "ui/model/ruler_marks.h"

#include <algorithm>

#include "image/display_rendition.h"
#include "ui/model/pixel_mapping.h"

namespace korvanel {

namespace {

// How image coordinates map to the screen along one axis of a panel.
struct AxisMap {
  int32_t first = 0;  // the picture's screen extent
  int32_t last = -1;
  int64_t origin = 0;  // screen position of image coordinate 0
  int64_t k = 1;       // replication factor, or
  int64_t image = 0;   // the image's extent
  bool stretch = false;

  int64_t ToScreen(int64_t c) const {
    return stretch ? first + c * (last - first + 1) / image : origin + c * k;
  }
  int64_t ToImage(int64_t s) const {
    if (stretch) return ProportionalPixel(s - first, last - first + 1, static_cast<uint32_t>(image));
    const int64_t d = s - origin;
    return d >= 0 ? d / k : -((-d + k - 1) / k);
  }
};

AxisMap MapOf(const PanelPlan& p, bool horizontal) {
  AxisMap m;
  m.first = horizontal ? p.picture.left : p.picture.top;
  m.last = horizontal ? p.picture.right : p.picture.bottom;
  m.origin = horizontal ? p.origin.x : p.origin.y;
  m.k = std::max<uint32_t>(p.k, 1);
  m.image = horizontal ? p.rendition->width : p.rendition->height;
  m.stretch = p.stretch;
  return m;
}

// Marks every `spacing` screen pixels from the picture's image origin
// (screen mode), or every `spacing` image pixels from `offset` (image mode),
// inside the picture.
std::vector<RulerMark> RulerMarks(const AxisMap& m, bool screen_pixels, int64_t spacing,
                                  int64_t offset) {
  std::vector<RulerMark> marks;
  if (spacing <= 0 || m.last < m.first || m.image <= 0) return marks;
  if (screen_pixels) {
    const int64_t anchor = m.stretch ? m.first : m.origin;
    int64_t s = anchor;
    if (s < m.first) s += (m.first - s + spacing - 1) / spacing * spacing;
    for (; s <= m.last; s += spacing) marks.push_back({static_cast<int32_t>(s), m.ToImage(s)});
    return marks;
  }
  const int64_t lowest = std::max<int64_t>(0, m.ToImage(m.first));
  const int64_t highest = std::min<int64_t>(m.image - 1, m.ToImage(m.last));
  int64_t c = std::max<int64_t>(offset, 0);
  if (c < lowest) c += (lowest - c + spacing - 1) / spacing * spacing;
  for (; c <= highest; c += spacing) {
    const int64_t s = m.ToScreen(c);
    if (s >= m.first && s <= m.last) marks.push_back({static_cast<int32_t>(s), c});
  }
  return marks;
}

}  // namespace

PanelRulerMarks RulerMarksOf(const PanelPlan& p, int32_t screen_scale) {
  if (p.rendition == nullptr) return {};
  const RulerSettings& s = p.ruler.settings;
  const int64_t scale = s.screen_pixels ? screen_scale : 1;
  return {RulerMarks(MapOf(p, true), s.screen_pixels, int64_t{s.spacing_x} * scale, s.offset_x),
          RulerMarks(MapOf(p, false), s.screen_pixels, int64_t{s.spacing_y} * scale, s.offset_y)};
}

}  // namespace korvanel
