// The frame renderer drawn into QImages and probed pixel by pixel: pictures
// at every scale, grid dots, highlight rings, pixel values, rulers, tabs and
// the no-image texts, at device pixel ratios 1 and 2.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <functional>
#include <memory>
#include <optional>

#include "app/configuration.h"
#include "image/display_rendition.h"
#include "image/image_gray.h"
#include "support/image_builders.h"
#include "ui/qt/frame_renderer.h"

namespace korvanel {
namespace {

constexpr QRgb kBlack = qRgb(0, 0, 0);
constexpr QRgb kDarkRed = qRgb(4, 0, 0);
constexpr QRgb kRulerRed = qRgb(255, 0, 0);

ConfigValues DefaultConfig() {
  return CConfiguration(std::filesystem::temp_directory_path()).Values();
}

QRgb Expected(const DisplayRendition& r, int64_t x, int64_t y) {
  const uint32_t p = r.pixels[static_cast<size_t>(y) * r.width + static_cast<size_t>(x)];
  return qRgb(DisplayRed(p), DisplayGreen(p), DisplayBlue(p));
}

// The bounding box of the pixels `match` accepts inside `area`; null when none.
QRect InkBox(const QImage& image, const QRect& area, const std::function<bool(QRgb)>& match) {
  QRect box;
  for (int y = area.top(); y <= area.bottom(); ++y) {
    for (int x = area.left(); x <= area.right(); ++x) {
      if (match(image.pixel(x, y))) box |= QRect(x, y, 1, 1);
    }
  }
  return box;
}

// The base for `plan` at `dpr`, with the overlay painted over it when asked.
QImage Render(const FramePlan& plan, const ConfigValues& config, qreal dpr, bool overlay) {
  CFrameRenderer renderer(config);
  renderer.SetDevicePixelRatio(dpr);
  QImage base;
  renderer.ComposeBase(plan, base);
  if (overlay) {
    QPainter painter(&base);
    renderer.DrawOverlay(plan, painter);
  }
  return base;
}

bool Whitish(QRgb c) { return qRed(c) > 160 && qGreen(c) > 160 && qBlue(c) > 160; }
bool Blackish(QRgb c) { return qRed(c) < 90 && qGreen(c) < 90 && qBlue(c) < 90; }
bool Magentaish(QRgb c) { return qRed(c) > 160 && qGreen(c) < 90 && qBlue(c) > 160; }

// A grey image with its rendition, shown as the only panel of a 200 x 120
// area. Replicated at `k` with its top-left pixel at (10, 6), or stretched
// into `stretch_to` inside the panel (8, 4)-(191, 115).
class PanelRig {
 public:
  PanelRig(uint32_t width, uint32_t height, const std::function<uint32_t(uint32_t, uint32_t)>& value)
      : image_(test::MakeGrayImage(8, width, height, value)), rendition_(image_->BuildDisplay()) {
    plan.area = {0, 0, 199, 119};
    PanelPlan& p = plan.panels.emplace_back();
    p.image = image_.get();
    p.rendition = rendition_;
    p.panel = {8, 4, 191, 115};
    p.values.format = "%u";
  }

  PanelPlan& Panel() { return plan.panels.front(); }
  const DisplayRendition& Rendition() const { return *rendition_; }

  void Replicate(uint32_t k) {
    PanelPlan& p = Panel();
    p.stretch = false;
    p.k = k;
    p.origin = {10, 6};
    const int32_t w = static_cast<int32_t>(rendition_->width * k);
    const int32_t h = static_cast<int32_t>(rendition_->height * k);
    p.picture = {10, 6, std::min(10 + w - 1, p.panel.right), std::min(6 + h - 1, p.panel.bottom)};
    p.source = {0, 0, (p.picture.right - 10) / k, (p.picture.bottom - 6) / k};
  }
  void Stretch(const ScreenRect& picture) {
    PanelPlan& p = Panel();
    p.stretch = true;
    p.k = 1;
    p.picture = picture;
    p.origin = {picture.left, picture.top};
    p.source = {0, 0, rendition_->width - 1, rendition_->height - 1};
  }

  QImage Compose() { return Render(plan, config, 1.0, false); }
  QImage ComposeWithOverlay() { return Render(plan, config, 1.0, true); }

  ConfigValues config = DefaultConfig();
  FramePlan plan;

 private:
  std::unique_ptr<CImageGray> image_;
  const DisplayRendition* rendition_;
};

uint32_t Ramp(uint32_t x, uint32_t y) { return (x * 37 + y * 91) % 256; }

// --- pictures ------------------------------------------------------------------

// The kernels' own tests check every pixel; here the plan's settings must
// reach them and the result must land at the panel's place.
TEST(FrameRendererPicture, ThePlansPictureGridRoiAndRingsReachTheBase) {
  PanelRig rig(5, 4, Ramp);
  rig.Replicate(3);
  rig.Panel().grid = true;
  rig.Panel().roi = {4, 3, 4, 3};
  rig.Panel().rings = 1;
  const QImage base = rig.Compose();
  ASSERT_EQ(base.size(), QSize(200, 120));
  ASSERT_EQ(base.format(), QImage::Format_RGB32);
  EXPECT_EQ(base.pixel(10 + 3 * 2 + 1, 6 + 3 * 1 + 1), Expected(rig.Rendition(), 2, 1)) << "inside a block";
  EXPECT_EQ(base.pixel(10, 6), qRgb(255, 255, 255)) << "grid dot: contrast of the black pixel (0, 0)";
  EXPECT_EQ(base.pixel(10 + 3 * 4, 6 + 3 * 3), kRulerRed) << "grid dot inside the ROI";
  EXPECT_EQ(base.pixel(9, 6 + 5), qRgb(255, 0, 128)) << "the ring";
  EXPECT_EQ(base.pixel(26, 6), kBlack) << "right of the ring, inside the panel";

  rig.Panel().rings = 0;
  rig.Panel().grid = false;
  rig.Panel().origin = {8, 6};  // scrolled: screen x 10 is the last column of pixel 0's block
  const QImage scrolled = rig.Compose();
  EXPECT_EQ(scrolled.pixel(10, 7), Expected(rig.Rendition(), 0, 0));
  EXPECT_EQ(scrolled.pixel(11, 7), Expected(rig.Rendition(), 1, 0));

  rig.Stretch({50, 40, 53, 42});
  const QImage below_one = rig.Compose();
  EXPECT_EQ(below_one.pixel(50, 40), Expected(rig.Rendition(), 0, 0));
  EXPECT_EQ(below_one.pixel(8, 4), kDarkRed) << "the panel's corner";
  EXPECT_EQ(below_one.pixel(7, 4), kBlack) << "outside the panel";
}

// --- pixel values ----------------------------------------------------------------

struct ValueCase {
  uint32_t sample;
  const char* format;
  bool ink_white;  // contrast of a dark pixel is white, of a light one black
  int chars;
};

TEST(FrameRendererValues, ValuesAreCentredInTheContrastColourAndFollowTheFormat) {
  const ValueCase cases[] = {
      {5, "%u", true, 1},
      {200, "%u", false, 3},
      {200, "%X", false, 2},  // "C8"
      {77, "%u", true, 2},
  };
  std::optional<int> width_of[4];
  for (const ValueCase& c : cases) {
    SCOPED_TRACE(std::string(c.format) + " " + std::to_string(c.sample));
    PanelRig rig(2, 1, [&](uint32_t, uint32_t) { return c.sample; });
    rig.Replicate(40);
    rig.Panel().values = {true, c.format[1] == 'X', true, c.format};
    const QImage base = rig.Compose();
    const QRect block(10, 6, 40, 40);
    const QRect ink = InkBox(base, block, c.ink_white ? Whitish : Blackish);
    ASSERT_FALSE(ink.isNull()) << "no value drawn";
    const int left_margin = ink.left() - block.left();
    const int right_margin = block.right() - ink.right();
    EXPECT_LE(std::abs(left_margin - right_margin), 3) << left_margin << " vs " << right_margin;
    const int top_margin = ink.top() - block.top();
    const int bottom_margin = block.bottom() - ink.bottom();
    EXPECT_LE(std::abs(top_margin - bottom_margin), 4) << top_margin << " vs " << bottom_margin;
    // The second block shows the same value the same way.
    EXPECT_EQ(InkBox(base, block.translated(40, 0), c.ink_white ? Whitish : Blackish), ink.translated(40, 0));
    if (!width_of[c.chars]) width_of[c.chars] = ink.width();
  }
  ASSERT_TRUE(width_of[1] && width_of[2] && width_of[3]);
  EXPECT_LT(*width_of[1], *width_of[2]);
  EXPECT_LT(*width_of[2], *width_of[3]);
}

TEST(FrameRendererValues, NothingIsWrittenWhenThePlanSaysTheValuesDoNotShow) {
  PanelRig rig(2, 1, [](uint32_t, uint32_t) { return 5u; });
  rig.Replicate(40);
  rig.Panel().values.show = false;
  const QImage base = rig.Compose();
  EXPECT_TRUE(InkBox(base, QRect(10, 6, 80, 40), [](QRgb c) { return c != qRgb(5, 5, 5); }).isNull());
}

TEST(FrameRendererValues, ThreeComponentValuesShowEveryComponent) {
  PanelRig rig(1, 1, [](uint32_t, uint32_t) { return 9u; });
  rig.Replicate(64);
  rig.Panel().values = {true, false, false, "%u,%u,%u"};
  const QRect one = InkBox(rig.Compose(), QRect(10, 6, 64, 64), Whitish);
  rig.Panel().values = {true, false, true, "%u"};
  const QRect three_of = InkBox(rig.Compose(), QRect(10, 6, 64, 64), Whitish);
  ASSERT_FALSE(one.isNull());
  ASSERT_FALSE(three_of.isNull());
  EXPECT_GT(one.width(), 3 * three_of.width());  // "9,9,9" against "9"
}

// --- rulers ----------------------------------------------------------------------

bool IsRulerRed(QRgb c) { return c == kRulerRed; }

class RulerRig : public PanelRig {
 public:
  RulerRig() : PanelRig(60, 40, [](uint32_t, uint32_t) { return 50u; }) {
    Replicate(1);
    PanelPlan& p = Panel();
    p.ruler.show = true;
    p.ruler.color = {255, 0, 0};
  }
};

TEST(FrameRendererRulers, IndentBarsEverySpacingInScreenPixelsWithLabels) {
  RulerRig rig;
  rig.Panel().ruler.settings = {true, 20, 15, 0, 0};
  const QImage base = rig.Compose();
  for (int x : {10, 30, 50}) {  // picture 10..69
    SCOPED_TRACE(x);
    EXPECT_EQ(base.pixel(x, 6), kRulerRed);
    EXPECT_EQ(base.pixel(x + 1, 15), kRulerRed);  // two wide, ten long
    EXPECT_NE(base.pixel(x, 16), kRulerRed);
  }
  for (int y : {6, 21, 36}) {  // picture 6..45
    SCOPED_TRACE(y);
    EXPECT_EQ(base.pixel(10, y), kRulerRed);
    EXPECT_EQ(base.pixel(19, y + 1), kRulerRed);
    EXPECT_NE(base.pixel(20, y + 1), kRulerRed) << "a bar is ten pixels long";
  }
  EXPECT_NE(base.pixel(40, 6), kRulerRed);
  // "20" labels the bar at x 30, to its right.
  EXPECT_FALSE(InkBox(base, QRect(33, 6, 16, 12), IsRulerRed).isNull());
}

TEST(FrameRendererRulers, ImagePixelSpacingStartsAtTheOffsetAndScalesWithTheZoom) {
  RulerRig rig;
  rig.Replicate(4);  // picture 10..249 clipped to the panel's 191
  rig.Panel().ruler.settings = {false, 10, 100, 3, 0};
  const QImage base = rig.Compose();
  EXPECT_NE(base.pixel(10, 12), kRulerRed) << "no top bar at image x 0";
  EXPECT_EQ(base.pixel(10 + 3 * 4, 12), kRulerRed);
  EXPECT_EQ(base.pixel(10 + 13 * 4, 12), kRulerRed);
  EXPECT_NE(base.pixel(10 + 8 * 4, 12), kRulerRed);
  EXPECT_EQ(base.pixel(19, 7), kRulerRed) << "left bar at image y 0";
  EXPECT_NE(base.pixel(19, 6 + 4 * 10), kRulerRed) << "the next left bar is 100 image pixels down";
}

TEST(FrameRendererRulers, MatrixDrawsDottedLinesOverThePicture) {
  RulerRig rig;
  rig.Panel().ruler.type = RulerType::Matrix;
  rig.Panel().ruler.settings = {true, 20, 20, 0, 0};
  const QImage base = rig.Compose();
  EXPECT_EQ(base.pixel(30, 6), kRulerRed);
  EXPECT_NE(base.pixel(30, 7), kRulerRed);
  EXPECT_EQ(base.pixel(30, 44), kRulerRed);
  EXPECT_EQ(base.pixel(12, 26), kRulerRed);
  EXPECT_NE(base.pixel(13, 26), kRulerRed);
  EXPECT_EQ(base.pixel(68, 26), kRulerRed);
  EXPECT_NE(base.pixel(70, 26), kRulerRed) << "nothing beyond the picture";
  EXPECT_TRUE(InkBox(base, QRect(32, 8, 16, 16), IsRulerRed).isNull()) << "no labels in a matrix";
}

TEST(FrameRendererRulers, NonPositiveSpacingDrawsNoMarks) {
  RulerRig rig;
  rig.Panel().ruler.settings = {true, 0, -5, 0, 0};
  EXPECT_TRUE(InkBox(rig.Compose(), QRect(0, 0, 200, 120), IsRulerRed).isNull());
}

// --- overlay -----------------------------------------------------------------------

TEST(FrameRendererOverlay, TabsFillWithBackgroundOrHighlightAndShowTheCloseBox) {
  PanelRig rig(4, 4, Ramp);
  rig.Replicate(1);
  TabPlan& tab = rig.Panel().tab;
  tab.rect = {10, 60, 189, 85};
  tab.close_box = {12, 62, 31, 81};
  tab.text = "[1] frame.nv12";
  const QRgb background = qRgb(150, 30, 20);
  const QRgb highlight = qRgb(200, 70, 0);

  QImage base = rig.ComposeWithOverlay();
  EXPECT_EQ(base.pixel(188, 84), background);
  EXPECT_EQ(base.pixel(10, 60), background);
  EXPECT_EQ(base.pixel(9, 60), kBlack);
  EXPECT_FALSE(InkBox(base, QRect(13, 63, 18, 18), Whitish).isNull()) << "the X";
  EXPECT_FALSE(InkBox(base, QRect(32, 60, 158, 26), Whitish).isNull()) << "the caption";

  tab.hovered = true;
  base = rig.ComposeWithOverlay();
  EXPECT_EQ(base.pixel(188, 84), highlight);

  tab.hovered = false;
  tab.close_hovered = true;
  base = rig.ComposeWithOverlay();
  EXPECT_EQ(base.pixel(188, 84), background);
  EXPECT_EQ(base.pixel(14, 64), highlight);

  tab.rect = {};
  base = rig.ComposeWithOverlay();
  EXPECT_TRUE(InkBox(base, QRect(10, 60, 180, 26), [&](QRgb c) { return c == background; }).isNull());
}

class NoImageRig {
 public:
  explicit NoImageRig(int32_t width = 600) {
    plan.area = {0, 0, width - 1, 299};
    plan.no_image.show = true;
    plan.no_image.invitation = kNoImageInvitation;
  }
  QImage Draw(qreal dpr = 1.0) { return Render(plan, DefaultConfig(), dpr, true); }
  FramePlan plan;
};

// The newer-version line shows only when there is one, below the invitation.
TEST(FrameRendererOverlay, NoImageAreaIsDarkRedWithTheInvitationAndNewerVersionCentred) {
  NoImageRig rig;
  QImage base = rig.Draw();
  EXPECT_EQ(base.pixel(0, 0), kDarkRed);
  EXPECT_EQ(base.pixel(599, 299), kDarkRed);
  const QRect text = InkBox(base, base.rect(), Whitish);
  ASSERT_FALSE(text.isNull());
  EXPECT_LE(std::abs(text.center().x() - 300), 3);
  EXPECT_LE(std::abs(text.center().y() - 150), 4);
  EXPECT_GT(text.width(), 300) << "the whole line, not a fragment";
  EXPECT_TRUE(InkBox(base, base.rect(), Magentaish).isNull()) << "no newer-version line";

  rig.plan.no_image.newer_version = "Newer version 1.5 is available. Refer to Help menu";
  base = rig.Draw();
  const QRect first = InkBox(base, base.rect(), Whitish);
  const QRect second = InkBox(base, base.rect(), Magentaish);
  ASSERT_FALSE(first.isNull());
  ASSERT_FALSE(second.isNull());
  EXPECT_GT(second.top(), first.bottom());
  EXPECT_LT(second.top() - first.bottom(), 20);
  EXPECT_LE(std::abs(second.center().x() - 300), 3);
}

TEST(FrameRendererOverlay, TextsScaleWithTheDevicePixelRatio) {
  NoImageRig rig(1200);
  const QRect single = InkBox(rig.Draw(1.0), QRect(0, 0, 1200, 300), Whitish);
  const QRect twice = InkBox(rig.Draw(2.0), QRect(0, 0, 1200, 300), Whitish);
  ASSERT_FALSE(single.isNull());
  ASSERT_FALSE(twice.isNull());
  EXPECT_NEAR(twice.height(), 2 * single.height(), 3);
  EXPECT_NEAR(twice.width(), 2 * single.width(), 12);
}

// --- sizes -----------------------------------------------------------------------

TEST(FrameRendererSizes, DegenerateAreasAndPanelsDrawNothingAndDoNotFail) {
  PanelRig rig(3, 3, Ramp);
  rig.Replicate(2);
  rig.plan.area = {};  // a window shrunk to nothing
  EXPECT_TRUE(rig.Compose().isNull());

  rig.plan.area = {0, 0, 0, 0};
  EXPECT_EQ(rig.Compose().size(), QSize(1, 1));

  rig.plan.area = {0, 0, 199, 119};
  rig.Panel().picture = {};
  rig.Panel().rings = 2;
  rig.Panel().ruler.show = true;
  rig.Panel().ruler.settings = {true, 1, 1, 0, 0};
  rig.Panel().values.show = true;
  const QImage base = rig.Compose();
  EXPECT_TRUE(InkBox(base, base.rect(), [](QRgb c) { return c != kBlack; }).isNull());
}

TEST(FrameRendererSizes, BaseIsReallocatedToTheAreaAndDrawnAtRatioOne) {
  PanelRig rig(3, 3, Ramp);
  rig.Replicate(2);
  CFrameRenderer renderer(rig.config);
  renderer.SetDevicePixelRatio(2.0);
  QImage base(50, 50, QImage::Format_ARGB32);
  base.setDevicePixelRatio(2.0);
  renderer.ComposeBase(rig.plan, base);
  EXPECT_EQ(base.size(), QSize(200, 120));
  EXPECT_EQ(base.format(), QImage::Format_RGB32);
  EXPECT_EQ(base.devicePixelRatio(), 1.0);
  EXPECT_EQ(base.pixel(11, 7), Expected(rig.Rendition(), 0, 0)) << "k 2 stays 2 device pixels";
  EXPECT_EQ(base.pixel(12, 6), Expected(rig.Rendition(), 1, 0));
}

TEST(FrameRendererSizes, BaseCoversTheAreaFromItsTopLeftCorner) {
  PanelRig rig(3, 3, Ramp);
  rig.Replicate(2);  // picture from (10, 6)
  rig.plan.area = {4, 2, 103, 52};
  const QImage base = rig.Compose();
  ASSERT_EQ(base.size(), QSize(100, 51));
  EXPECT_EQ(base.pixel(10 - 4, 6 - 2), Expected(rig.Rendition(), 0, 0));
  EXPECT_EQ(base.pixel(10 - 4 + 5, 6 - 2 + 5), Expected(rig.Rendition(), 2, 2));
  EXPECT_EQ(base.pixel(10 - 4 + 6, 6 - 2), kBlack);
}

// --- text metrics ------------------------------------------------------------------

TEST(QtTextMetrics, ValueFontIsFixedPitchAndSizedForTheManualsZoomFactors) {
  CQtTextMetrics metrics(DefaultConfig().gui);
  EXPECT_EQ(metrics.Width(FontRole::Values, "111"), metrics.Width(FontRole::Values, "888"));
  EXPECT_EQ(metrics.Width(FontRole::Values, "255"), metrics.ValueWidth(3));
  EXPECT_EQ(metrics.Width(FontRole::Values, "255,10,10"), metrics.ValueWidth(9));
  // One-component values fit a block from ZF 15 and three components by ZF
  // 45, with a pixel to spare.
  EXPECT_LT(metrics.Width(FontRole::Values, "255"), 15);
  EXPECT_LT(metrics.Width(FontRole::Values, "255,10,10"), 45);
  EXPECT_LT(metrics.Height(FontRole::Values), 15);
}

TEST(QtTextMetrics, ConfiguredPixelHeightsScaleWithTheRatio) {
  ConfigValues config = DefaultConfig();
  config.gui.tab_font = {"Arial", 16, 12};
  config.gui.ruler_font = {"Arial", 32, 0};  // smaller size: three quarters
  CQtTextMetrics metrics(config.gui);
  EXPECT_EQ(metrics.Font(FontRole::Tab).pixelSize(), 16);
  EXPECT_EQ(metrics.Font(FontRole::TabSmall).pixelSize(), 12);
  EXPECT_EQ(metrics.Font(FontRole::Ruler).pixelSize(), 32);
  EXPECT_EQ(metrics.Font(FontRole::RulerSmall).pixelSize(), 24);
  const int32_t tab_width = metrics.Width(FontRole::Tab, "[1] frame.nv12");
  metrics.SetDevicePixelRatio(2.0);
  EXPECT_EQ(metrics.Font(FontRole::Tab).pixelSize(), 32);
  EXPECT_EQ(metrics.Font(FontRole::RulerSmall).pixelSize(), 48);
  EXPECT_NEAR(metrics.Width(FontRole::Tab, "[1] frame.nv12"), 2 * tab_width, 4);
  metrics.SetDevicePixelRatio(1.5);
  EXPECT_EQ(metrics.Font(FontRole::Tab).pixelSize(), 24);
}

}  // namespace
}  // namespace korvanel
