#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "ui/model/geometry_printers.h"
#include "ui/model/viewer_fixture.h"

namespace korvanel {
namespace {

// 16 x 16 grey, columns 0 1 2 3 0 1 2 3 ...: 64 pixels of each value.
uint32_t Stripes(uint32_t x, uint32_t) { return x % 4; }

class HistogramCommandsTest : public test::ViewerFixture {
 protected:
  size_t AddStripes(const std::string& name, uint32_t bits = 8) {
    return app.RegisterImage(test::MakeGrayImage(bits, 16, 16, Stripes), name, "P,Y,8", false);
  }
  std::vector<bool> Shown() {
    std::vector<bool> shown;
    for (const PanelPlan& panel : Frame().panels) shown.push_back(panel.histogram.show);
    return shown;
  }
  std::vector<std::string> Lines(size_t panel = 0) {
    const HistogramPlan& h = Frame().panels.at(panel).histogram;
    if (h.data == nullptr) return {};
    std::vector<std::string> lines;
    for (const HistogramChannelView& channel : h.data->channels) {
      lines.insert(lines.end(), channel.lines.begin(), channel.lines.end());
    }
    return lines;
  }
  void StartStripes() {
    AddStripes("a.raw");
    Start();
  }
  IImageContainer& Image(size_t index) { return *app.Images().At(index).image; }
  // Moves the cursor and lets the next frame see it.
  void Move(ScreenPoint p, Modifiers m = {}) {
    MoveTo(p, m);
    controller.PrepareFrame();
  }
};

TEST_F(HistogramCommandsTest, IShowsTheFocusImagesStatisticsAndHidesThemAgain) {
  StartStripes();
  EXPECT_EQ(Shown(), std::vector<bool>{false});
  Press(Key::I);
  EXPECT_EQ(Shown(), std::vector<bool>{true});
  EXPECT_EQ(Lines(), (std::vector<std::string>{"Total pixels: 256   Std:  1.118   Var:  1.250",
                                               "Mean:  1.500   Mode (64): 0   Median : 2"}));
  EXPECT_TRUE(host.menu[Command::ToggleHistogram].checked);
  const HistogramPlan& h = Frame().panels[0].histogram;
  EXPECT_EQ(h.data->channels[0].bins.counts[3], 64u);
  // At the picture's top-left corner, moved left to stay inside the panel.
  const PanelPlan& panel = Frame().panels[0];
  EXPECT_EQ(h.layout.box.top, panel.picture.top + 8);
  EXPECT_EQ(h.layout.box.left, std::min(panel.picture.left + 8, panel.panel.right - h.layout.box.Width() + 1));
  EXPECT_EQ(h.layout.box.right, panel.panel.right);
  Press(Key::I);
  EXPECT_EQ(Shown(), std::vector<bool>{false});
  EXPECT_FALSE(host.menu[Command::ToggleHistogram].checked);
  controller.Execute(Command::ToggleHistogram);  // View > Histogram
  EXPECT_EQ(Shown(), std::vector<bool>{true});
}

TEST_F(HistogramCommandsTest, InCompareModeTheCursorDecidesWhichImagesToggle) {
  AddStripes("a.raw");
  AddStripes("b.raw");
  AddStripes("c.raw");
  app.CompareImages({0, 1, 2});
  ASSERT_TRUE(app.CompareMode());
  Start();
  const ScreenRect second = Frame().panels[1].picture;
  Move({second.left + 1, second.top + 1});
  Press(Key::I);
  EXPECT_EQ(Shown(), (std::vector<bool>{false, true, false}));
  // Over no image: every party image takes the left-most one's negated state.
  Move({1, 590});
  Press(Key::I);
  EXPECT_EQ(Shown(), (std::vector<bool>{true, true, true}));
  Press(Key::I);
  EXPECT_EQ(Shown(), (std::vector<bool>{false, false, false}));
}

TEST_F(HistogramCommandsTest, ATabClickTogglesThatImage) {
  AddStripes("a.raw");
  AddStripes("b.raw");
  app.CompareImages({0, 1});
  Start();
  const TabPlan tab = Frame().panels[1].tab;
  controller.OnLeftDown({tab.close_box.right + 20, tab.rect.top + 2}, {});
  EXPECT_EQ(Shown(), (std::vector<bool>{false, true}));
  controller.OnLeftDown({tab.close_box.right + 20, tab.rect.top + 2}, {});
  EXPECT_EQ(Shown(), (std::vector<bool>{false, false}));
  controller.OnLeftDown({tab.close_box.left + 1, tab.close_box.top + 1}, {});
  EXPECT_EQ(app.Images().Count(), 1u) << "the close box closes the image";
  EXPECT_EQ(Shown(), (std::vector<bool>{false})) << "and toggles no histogram";
}

TEST_F(HistogramCommandsTest, LookKeysActOnlyWhileAnOverlayShows) {
  StartStripes();
  Press(Key::B);
  Press(Key::B, kShift);
  Press(Key::B, kCtrl);
  EXPECT_FALSE(controller.HistogramLook().transparent);
  EXPECT_FALSE(controller.HistogramLook().shadow);
  EXPECT_EQ(controller.HistogramLook().color_index, 0u);

  Press(Key::I);
  Press(Key::B);
  Press(Key::B, kShift);
  Press(Key::B, kCtrl);
  const HistogramPlan& h = Frame().panels[0].histogram;
  EXPECT_TRUE(h.transparent);
  EXPECT_TRUE(h.shadow);
  EXPECT_EQ(h.foreground, (Rgb{0, 0, 0}));
  EXPECT_EQ(h.shadow_color, (Rgb{255, 255, 255}));
  EXPECT_TRUE(host.menu[Command::ToggleHistogramTransparent].checked);
  EXPECT_TRUE(host.menu[Command::ToggleHistogramShadow].checked);
  Press(Key::B, kCtrl);
  EXPECT_EQ(Frame().panels[0].histogram.foreground, (Rgb{255, 255, 255}));
  EXPECT_EQ(Frame().panels[0].histogram.shadow_color, (Rgb{0, 0, 0}));
}

TEST_F(HistogramCommandsTest, BeautifyRewritesTheLines) {
  StartStripes();
  Press(Key::I);
  Press(Key::A);
  EXPECT_TRUE(host.menu[Command::ToggleBeautify].checked);
  EXPECT_EQ(Lines(), (std::vector<std::string>{"Total pixels: 256  Std: 1.1180  Var: 1.2500",
                                               "Mean: 1.5000  Mode (64): 0  Median: 2"}));
  Press(Key::A);
  EXPECT_EQ(Lines()[0], "Total pixels: 256   Std:  1.118   Var:  1.250");
}

TEST_F(HistogramCommandsTest, TheRoiLimitsTheStatisticsAndMaskedPixelsNeverCount) {
  StartStripes();
  Press(Key::I);
  const uint64_t version = Frame().panels[0].histogram.data->version;
  Image(0).SetRegionOfInterest(Rect{0, 0, 1, 15});
  controller.RefreshHistograms();
  EXPECT_EQ(Lines(), (std::vector<std::string>{"Total pixels: 32   Std:  0.500   Var:  0.250",
                                               "Mean:  0.500   Mode (16): 0   Median : 1"}));
  EXPECT_GT(Frame().panels[0].histogram.data->version, version);
  Image(0).SetRegionOfInterest(Rect::None());
  controller.RefreshHistograms();
  EXPECT_EQ(Lines()[0], "Total pixels: 256   Std:  1.118   Var:  1.250");

  // A filter that masks out every pixel: nothing counts, and no NaN shows.
  auto& concrete = dynamic_cast<CImageConcreteBase&>(Image(0));
  concrete.SetSelectionMask(std::vector<uint32_t>(8, 0));
  controller.RefreshHistograms();
  EXPECT_EQ(Lines(), (std::vector<std::string>{"Total pixels: 0   Std:  0.000   Var:  0.000",
                                               "Mean:  0.000   Mode (0): 0   Median : 0"}));
  // And the same for a ROI whose pixels are all masked out.
  Image(0).SetRegionOfInterest(Rect{2, 2, 5, 5});
  controller.RefreshHistograms();
  EXPECT_EQ(Lines()[1], "Mean:  0.000   Mode (0): 0   Median : 0");
}

TEST_F(HistogramCommandsTest, ThirtyTwoBitImagesCountByTheirTopSixteenBits) {
  app.RegisterImage(test::MakeGrayImage(32, 4, 1, [](uint32_t x, uint32_t) { return 0x10000u * x + 5; }),
                    "deep.raw", "P,Y,32", false);
  Start();
  Press(Key::I);
  const HistogramChannelView& channel = Frame().panels[0].histogram.data->channels.at(0);
  EXPECT_EQ(channel.bins.counts, (std::vector<uint64_t>{1, 1, 1, 1}));
  EXPECT_EQ(channel.bins.shift, 16u);
  EXPECT_EQ(channel.lines[0].rfind("Total pixels: 4   ", 0), 0u) << channel.lines[0];
}

TEST_F(HistogramCommandsTest, HoveringABinShowsItsCountInTheTabAndCtrlLightsThePixelsBins) {
  StartStripes();
  Press(Key::I);
  const PanelPlan panel = Frame().panels[0];
  const HistogramPlan& h = panel.histogram;
  ASSERT_TRUE(h.layout.AllBinsFit());
  const ScreenRect bars = h.layout.rows.at(1).rect;
  Move({bars.left + 3 * h.layout.bin_width, bars.bottom});
  EXPECT_EQ(Frame().panels[0].tab.text, panel.tab.text + "  Y[3] = 64");
  EXPECT_EQ(Frame().panels[0].histogram.hover, (HistogramHover{0, 3}));
  EXPECT_NE(std::find(host.last_damage.begin(), host.last_damage.end(), h.layout.box), host.last_damage.end());

  // Column 6 of the picture holds value 2; the box starts 8 rows down.
  const ScreenRect picture = panel.picture;
  const ScreenPoint pixel_6_3{picture.left + 6, picture.top + 3};
  ASSERT_FALSE(h.layout.box.Contains(pixel_6_3));
  Move(pixel_6_3, kCtrl);
  EXPECT_EQ(Frame().panels[0].histogram.lit, (std::vector<std::optional<uint32_t>>{2u}));
  EXPECT_FALSE(Frame().panels[0].histogram.hover.has_value());
  // Off the bars the tab reads the pixel, with no bin count after it.
  EXPECT_EQ(Frame().panels[0].tab.text, "[1] <~6,3~> Y: <~2~> (RGB-8: <2,2,2>)");
  Move({picture.left + 7, picture.top + 3});
  EXPECT_TRUE(Frame().panels[0].histogram.lit.empty()) << "without Ctrl nothing is lit";
}

TEST_F(HistogramCommandsTest, HelpPagesShowTheirTextAndAButtonReleaseHidesThem) {
  StartStripes();
  Press(Key::F1);
  controller.OnChar(U'3', {});
  const FramePlan& plan = Frame();
  ASSERT_NE(plan.help_text, nullptr);
  EXPECT_EQ(plan.help_text->rfind("HOT KEYS 2", 0), 0u);
  Press(Key::End);
  EXPECT_NE(Frame().help_text->find("Refer to Help sub-menu for detailed info..."), std::string::npos);
  controller.OnLeftUp({5, 5});
  EXPECT_FALSE(controller.State().help_visible);
  EXPECT_EQ(Frame().help_text, nullptr);
  Press(Key::F1);
  controller.OnRightUp({100, 100});  // a right release hides them too
  EXPECT_FALSE(controller.State().help_visible);
  controller.Execute(Command::HelpWindow);
  EXPECT_EQ(host.dialogs, std::vector<DialogId>{DialogId::HelpWindow});
}

TEST_F(HistogramCommandsTest, TheStatusReadoutEndsWithThePixelsBinCountAndAnRoiRecountsIt) {
  StartStripes();
  const ScreenRect picture = Frame().panels[0].picture;
  const auto part0 = [&] { return host.statuses.back().parts[kStatusReadoutPart]; };
  Move({picture.left + 6, picture.top + 3});
  EXPECT_EQ(part0().find(" / Hist"), std::string::npos) << "no overlay, no count";
  Press(Key::I);
  Move({picture.left + 6, picture.top + 2});  // value 2: 64 of the 256 pixels
  EXPECT_TRUE(part0().ends_with(" / Hist: 64")) << part0();
  // Columns 0..5 of rows 0..1 hold value 2 twice.
  for (const ScreenPoint corner : {ScreenPoint{picture.left, picture.top}, ScreenPoint{picture.left + 5, picture.top + 1}}) {
    controller.PrepareFrame();
    controller.OnLeftDown(corner, {});
  }
  Move({picture.left + 2, picture.top});
  EXPECT_TRUE(part0().starts_with("ROI: 0,0..5,1 (6x2) | ")) << part0();
  EXPECT_TRUE(part0().ends_with(" / Hist: 2")) << part0();
}

}  // namespace
}  // namespace korvanel
