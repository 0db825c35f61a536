#include "ui/model/ruler_marks.h"

#include <gtest/gtest.h>

#include "ui/model/pixel_mapping.h"

namespace korvanel {
namespace {

// A 7-pixel-wide picture showing a 10 x 10 image below ZF 1 (and a 5 x 5
// one at ZF 3): a ruler label and the readout at the same screen position
// name the same pixel.
struct Case {
  double zf;
  uint32_t image;
  ScreenRect picture;
};

TEST(RulerMarks, ScreenSpacedLabelsNameThePixelTheReadoutNames) {
  const Case cases[] = {
      {0.7, 10, {3, 5, 9, 11}},
      {0.3, 23, {0, 0, 6, 6}},
      {3, 5, {2, 2, 16, 16}},
  };
  for (const Case& c : cases) {
    ImageView view;
    view.size = {c.image, c.image};
    view.zf = c.zf;
    view.picture = c.picture;
    DisplayRendition rendition;
    rendition.width = rendition.height = c.image;
    PanelPlan panel;
    panel.picture = c.picture;
    panel.origin = {c.picture.left, c.picture.top};
    panel.rendition = &rendition;
    panel.stretch = !Replicates(c.zf);
    panel.k = RoundedZoom(c.zf);
    panel.ruler.settings = {true, 1, 1, 0, 0};
    const PanelRulerMarks marks = RulerMarksOf(panel, 1);
    ASSERT_EQ(marks.x.size(), static_cast<size_t>(c.picture.Width())) << c.zf;
    for (const RulerMark& m : marks.x) {
      const std::optional<PixelPoint> pixel = ScreenToPixel(view, {m.screen, c.picture.top});
      ASSERT_TRUE(pixel.has_value());
      EXPECT_EQ(m.coordinate, pixel->x) << "ZF " << c.zf << " at screen x " << m.screen;
    }
    for (const RulerMark& m : marks.y) {
      const std::optional<PixelPoint> pixel = ScreenToPixel(view, {c.picture.left, m.screen});
      ASSERT_TRUE(pixel.has_value());
      EXPECT_EQ(m.coordinate, pixel->y) << "ZF " << c.zf << " at screen y " << m.screen;
    }
  }
}

}  // namespace
}  // namespace korvanel
