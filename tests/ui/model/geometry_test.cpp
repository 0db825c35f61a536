#include "ui/model/geometry.h"

#include <gtest/gtest.h>

#include <vector>

#include "ui/model/geometry_printers.h"

namespace korvanel {
namespace {

std::vector<double> Steps(double start, double (*step)(double), int count) {
  std::vector<double> seen;
  double zf = start;
  for (int i = 0; i < count; ++i) seen.push_back(zf = step(zf));
  return seen;
}

TEST(ZoomSteps, InFromFitReachesOneToOneThenAddsOneFiveAndTenUpToHundred) {
  EXPECT_EQ(Steps(kFitZoom, ZoomIn, 25),
            (std::vector<double>{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 15, 20, 25, 30, 35, 40, 45, 50,
                                 60, 70, 80, 90, 100, 100, 100}));
}

TEST(ZoomSteps, OutFromFitTakesNinetyPercentDownToAQuarter) {
  const std::vector<double> seen = Steps(kFitZoom, ZoomOut, 16);
  double expected = 1;
  for (size_t i = 0; i < 13; ++i) {
    expected *= 0.9;
    EXPECT_DOUBLE_EQ(seen[i], expected) << "step " << i;
  }
  EXPECT_EQ(seen[13], 0.25);
  EXPECT_EQ(seen[14], 0.25);
  EXPECT_EQ(seen[15], 0.25);
}

TEST(ZoomSteps, SingleStepsAtTheBounds) {
  struct Case {
    double from;
    double in;
    double out;
  };
  const Case cases[] = {
      {1, 2, kFitZoom},  {0.95, kFitZoom, 0.855}, {9, 10, 8},     {10, 15, 9},
      {50, 60, 45},      {60, 70, 50},            {100, 100, 90}, {0.25, 0.28, 0.25},
      {2.5, 3.5, 1.5},   {49, 54, 44},
  };
  for (const Case& c : cases) {
    EXPECT_DOUBLE_EQ(ZoomIn(c.from), c.in) << c.from;
    EXPECT_DOUBLE_EQ(ZoomOut(c.from), c.out) << c.from;
  }
}

TEST(ZoomText, FitRatioOrFraction) {
  const std::pair<double, const char*> cases[] = {
      {0, "F2W"},     {1, "1:1"},     {15, "1:15"},  {100, "1:100"}, {2.4, "1:2"},
      {2.5, "1:3"},   {0.9, "0.90"},  {0.25, "0.25"}, {0.729, "0.73"}, {0.99999, "1.00"},
  };
  for (const auto& [zf, text] : cases) EXPECT_EQ(ZoomText(zf), text) << zf;
}

// The panel of an 800x580 image area with tabs: 780 x 520 pixels.
constexpr ScreenRect kPanel{10, 49, 789, 568};

TEST(PictureRect, PlacesThePictureInItsPanel) {
  struct Case {
    const char* name;
    ImageSize image;
    double zf;
    ScreenRect expected;
  };
  const Case cases[] = {
      {"small at 1:1 is centred", {64, 48}, 1, {368, 285, 431, 332}},
      {"small at 1:5 is centred", {64, 48}, 5, {240, 189, 559, 428}},
      {"fit by height", {64, 48}, kFitZoom, {54, 49, 746, 568}},
      {"half of fit", {64, 48}, 0.5, {227, 179, 573, 438}},
      {"fit by width", {400, 100}, kFitZoom, {10, 212, 789, 406}},
      {"larger spans and scrolls", {2000, 1000}, 2, {10, 49, 789, 568}},
      {"one pixel fits the height", {1, 1}, kFitZoom, {140, 49, 659, 568}},
      {"one pixel at 1:1", {1, 1}, 1, {400, 309, 400, 309}},
      {"a line keeps one row", {65535, 1}, kFitZoom, {10, 309, 789, 309}},
      {"a line at a quarter", {65535, 1}, 0.25, {303, 309, 497, 309}},
      {"a column keeps one column", {1, 65535}, kFitZoom, {400, 49, 400, 568}},
      {"a line at 1:100", {65535, 1}, 100, {10, 259, 789, 358}},
  };
  for (const Case& c : cases) EXPECT_EQ(PictureRect(kPanel, c.image, c.zf), c.expected) << c.name;
}

TEST(PictureRect, EmptyPanelOrImageGivesAnEmptyPicture) {
  EXPECT_TRUE(PictureRect({10, 0, -11, -12}, {64, 48}, kFitZoom).Empty());
  EXPECT_TRUE(PictureRect({10, 0, -11, -12}, {64, 48}, 3).Empty());
  EXPECT_TRUE(PictureRect(kPanel, {0, 48}, kFitZoom).Empty());
  EXPECT_EQ(PictureRect({10, 10, 10, 10}, {65535, 65535}, 0.25), (ScreenRect{10, 10, 10, 10}));
}

TEST(VisibleRect, ShowsTheScrolledPartAtOneToOneAndAboveAndAllBelow) {
  struct Case {
    const char* name;
    ImageSize image;
    double zf;
    ScreenPoint offset;
    PixelRect expected;
  };
  const Case cases[] = {
      {"scrolled at 1:2", {2000, 1000}, 2, {-100, -40}, {50, 20, 439, 279}},
      {"partial blocks at 1:3", {2000, 1000}, 3, {-1, -2}, {0, 0, 260, 173}},
      {"at the far end", {2000, 1000}, 2, {-3218, -1478}, {1609, 739, 1998, 998}},
      {"small picture whole", {64, 48}, 1, {0, 0}, {0, 0, 63, 47}},
      {"below 1:1 whole image", {2000, 1000}, 0.5, {-100, -40}, {0, 0, 1999, 999}},
      {"fit whole image", {65535, 1}, kFitZoom, {0, 0}, {0, 0, 65534, 0}},
  };
  for (const Case& c : cases) {
    const ScreenRect picture = PictureRect(kPanel, c.image, c.zf);
    EXPECT_EQ(VisibleRect(picture, c.image, c.zf, c.offset), c.expected) << c.name;
  }
}

TEST(ScrollToCentre, KeepsThePointInTheMiddleWithinTheImage) {
  struct Case {
    const char* name;
    ImageSize image;
    double zf;
    ScreenPoint centre;
    ScreenPoint expected;
  };
  const Case cases[] = {
      {"middle at 1:1", {2000, 1000}, 1, {1000, 500}, {-610, -240}},
      {"near the end is held at the last page", {2000, 1000}, 2, {1990, 995}, {-3218, -1478}},
      {"top-left corner", {2000, 1000}, 4, {0, 0}, {0, 0}},
      {"beyond the image", {2000, 1000}, 1, {5000, 5000}, {-1219, -479}},
      {"smaller than the panel stays at 0", {64, 48}, 10, {63, 47}, {0, 0}},
      {"wide but short image scrolls only across", {2000, 100}, 1, {1000, 99}, {-610, 0}},
      {"below 1:1 never scrolls", {2000, 1000}, 0.5, {1000, 500}, {0, 0}},
      {"fit never scrolls", {2000, 1000}, kFitZoom, {1000, 500}, {0, 0}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ScrollToCentre(kPanel, c.image, c.zf, c.centre), c.expected) << c.name;
  }
}

TEST(ScrollBar, RangeIsContentLessVisibleAndDisabledWhenNothingScrolls) {
  struct Case {
    int64_t content;
    int32_t visible;
    int32_t position;
    ScrollBarState expected;
  };
  const Case cases[] = {
      {4000, 780, 3218, {3220, 780, 2, 3218, true}},
      {64, 780, 0, {0, 780, 2, 0, false}},
      {780, 780, 0, {0, 780, 2, 0, false}},
      {1000, 500, 900, {500, 500, 2, 500, true}},
      {6553500, 780, -5, {6552720, 780, 2, 0, true}},
      {100, 0, 0, {100, 0, 2, 0, true}},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(MakeScrollBar(c.content, c.visible, 2, c.position), c.expected) << c.content;
  }
}

TEST(ScrollBar, ActionsMoveByLineOrPageAndClamp) {
  const ScrollBarState bar = MakeScrollBar(1000, 300, 4, 100);  // maximum 700
  struct Case {
    ScrollAction action;
    int32_t thumb;
    int32_t expected;
  };
  const Case cases[] = {
      {ScrollAction::LineUp, 0, 96},   {ScrollAction::LineDown, 0, 104},
      {ScrollAction::PageUp, 0, 0},    {ScrollAction::PageDown, 0, 400},
      {ScrollAction::Thumb, 650, 650}, {ScrollAction::Thumb, 9999, 700},
      {ScrollAction::Top, 0, 0},       {ScrollAction::Bottom, 0, 700},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(ScrollPosition(bar, c.action, c.thumb), c.expected) << static_cast<int>(c.action);
  }
}

}  // namespace
}  // namespace korvanel
