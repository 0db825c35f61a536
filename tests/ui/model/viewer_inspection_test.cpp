#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/app_state.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"
#include "ui/model/geometry_printers.h"
#include "ui/model/readout.h"
#include "ui/model/recording_viewer_host.h"
#include "ui/model/viewer_controller.h"

namespace korvanel {
namespace {

constexpr ScreenSize kClient{800, 600};
constexpr int32_t kStatusHeight = 20;

// Pixel readout, ROI by mouse, copy pixel and find marks as the controller
// drives them. Images come from MakeImage: component c at (x, y) holds
// c*1000 + y*100 + x.
class ViewerInspectionTest : public ::testing::Test {
 protected:
  size_t AddGray(uint32_t w, uint32_t h, const std::string& name) {
    return app.RegisterImage(test::MakeImage<CImageGray>(8, w, h), name, "P,Y,8", false);
  }
  size_t AddRgb(uint32_t w, uint32_t h, const std::string& name) {
    return app.RegisterImage(test::MakeImage<CImageRgb>(16, w, h), name, "I,RGB,16", false);
  }
  void Start() {
    controller.OnResize(kClient, kStatusHeight);
    controller.PrepareFrame();
  }
  // The screen point of image pixel (x, y) in panel `panel` at 1:1.
  ScreenPoint At(int32_t x, int32_t y, size_t panel = 0) {
    const ScreenRect& picture = controller.PrepareFrame().panels.at(panel).picture;
    return {picture.left + x, picture.top + y};
  }
  void MoveTo(ScreenPoint p) {
    controller.PrepareFrame();
    controller.OnMouseMove(p, {});
  }
  void Click(ScreenPoint p) {
    controller.PrepareFrame();
    controller.OnLeftDown(p, {});
    controller.OnLeftUp(p);
  }
  std::string Part0() const { return host.statuses.back().parts[kStatusReadoutPart]; }
  std::vector<std::string> Tabs() {
    std::vector<std::string> texts;
    for (const PanelPlan& panel : controller.PrepareFrame().panels) texts.push_back(panel.tab.text);
    return texts;
  }
  const Rect Roi(size_t index) const { return app.Images().At(index).image->GetRegionOfInterest(); }

  test::RecordingFeedback feedback;
  AppState app{feedback};
  test::RecordingViewerHost host;
  CViewerController controller{app, host, ViewerSettings{}};
};

TEST_F(ViewerInspectionTest, MovesFillTheStatusAndTheTab) {
  AddGray(64, 48, "a.raw");
  Start();
  EXPECT_EQ(Part0(), kOutOfRangeText);
  EXPECT_EQ(Tabs(), (std::vector<std::string>{"[1] a.raw"}));
  MoveTo(At(3, 2));
  EXPECT_EQ(Part0(), "XY <3,2>: [1] <3,2> Y: <203> (RGB-8: <203,203,203>)");
  EXPECT_EQ(Tabs(), (std::vector<std::string>{"[1] <~3,2~> Y: <~203~> (RGB-8: <203,203,203>)"}));
  // Tabs and the cursor's overlay are repainted, the base is not.
  EXPECT_EQ(host.base_invalidations, 1);
  EXPECT_FALSE(host.last_damage.empty());

  controller.Execute(Command::ToggleHex);
  MoveTo(At(4, 2));
  EXPECT_EQ(Part0(), "XY <4,2>: [1] <4,2> Y: <0xCC> (RGB-8: <0xCC,0xCC,0xCC>)");

  MoveTo({2, 2});  // left of every picture
  EXPECT_EQ(Part0(), kOutOfRangeText);
  EXPECT_EQ(Tabs(), (std::vector<std::string>{"[1] a.raw"}));
}

TEST_F(ViewerInspectionTest, ANarrowWindowUsesTheShortOutOfRangeText) {
  AddGray(64, 48, "a.raw");
  controller.OnResize({700, 500}, kStatusHeight);
  EXPECT_EQ(Part0(), kOutOfRangeShortText);
}

TEST_F(ViewerInspectionTest, CompareModeReadsTheSameCoordinateFromEveryPartyImage) {
  AddRgb(64, 48, "a.raw");
  AddGray(16, 8, "b.raw");
  app.ForceComparison({0, 1});
  Start();
  MoveTo(At(20, 5));
  std::vector<std::string> tabs = Tabs();
  EXPECT_EQ(tabs[0].substr(0, 45), "[1] <~20,5~> RGB: <~520,1520,2520~> (RGB-8: <");
  EXPECT_EQ(tabs[1], "[2] Out-of-Range");
  MoveTo(At(3, 2, 1));
  tabs = Tabs();
  EXPECT_EQ(tabs[0].substr(0, 36), "[1] <~3,2~> RGB: <~203,1203,2203~> (");
  EXPECT_EQ(tabs[1], "[2] <~3,2~> Y: <~203~> (RGB-8: <203,203,203>)");
  EXPECT_EQ(Part0(), "XY <3,2>: [2] <3,2> Y: <203> (RGB-8: <203,203,203>)");
}

TEST_F(ViewerInspectionTest, TwoClicksChooseTheRoiAndARightClickClearsIt) {
  AddGray(64, 48, "a.raw");
  AddGray(64, 48, "b.raw");
  app.CompareImages({0, 1});
  Start();
  Click(At(22, 40));
  MoveTo(At(20, 30, 1));
  EXPECT_EQ(Part0().substr(0, 44), "ROI: 22,40..?,? (3x11) | XY <20,30>: [2] <20");
  EXPECT_NE(Tabs()[1].find(" ~|L|=10.20 ; Deg=101.31~"), std::string::npos) << Tabs()[1];
  EXPECT_TRUE(controller.PrepareFrame().directive.show);

  Click(At(20, 30, 1));
  EXPECT_EQ(Roi(0), (Rect{20, 30, 22, 40}));
  EXPECT_EQ(Roi(1), (Rect{20, 30, 22, 40}));
  MoveTo(At(21, 31));
  EXPECT_EQ(Part0().substr(0, 46), "ROI: 20,30..22,40 (3x11) | XY <21,31>: [1] <21");
  const FramePlan& plan = controller.PrepareFrame();
  EXPECT_FALSE(plan.directive.show);
  EXPECT_EQ(plan.panels[0].inspect.roi_frame,
            (ScreenRect{At(20, 30).x, At(20, 30).y, At(22, 40).x, At(22, 40).y}));

  controller.OnRightUp(At(21, 31));
  EXPECT_TRUE(Roi(0).IsNone());
  EXPECT_TRUE(Roi(1).IsNone());
  EXPECT_TRUE(controller.PrepareFrame().panels[0].inspect.roi_frame.Empty());
}

TEST_F(ViewerInspectionTest, DraggingTheFrameResizesTheRoi) {
  AddGray(64, 48, "a.raw");
  Start();
  controller.Execute(Command::ZoomIn);  // 1:2 keeps a 2-pixel block per image pixel
  controller.Execute(Command::ZoomIn);  // 1:3
  const auto at = [&](int32_t x, int32_t y) {
    const ScreenRect& picture = controller.PrepareFrame().panels[0].picture;
    return ScreenPoint{picture.left + 3 * x + 1, picture.top + 3 * y + 1};
  };
  Click(at(10, 10));
  Click(at(20, 20));
  ASSERT_EQ(Roi(0), (Rect{10, 10, 20, 20}));
  const ScreenRect& picture = controller.PrepareFrame().panels[0].picture;
  const ScreenPoint right_edge{picture.left + 3 * 21 - 1, picture.top + 3 * 15};
  MoveTo(right_edge);
  EXPECT_EQ(host.cursor, CursorShape::SizeHorizontal);
  MoveTo({picture.left + 3 * 10, picture.top + 3 * 10});
  EXPECT_EQ(host.cursor, CursorShape::SizeDiagonal);
  MoveTo(right_edge);
  controller.OnLeftDown(right_edge, {});
  MoveTo(at(30, 15));
  EXPECT_EQ(Roi(0), (Rect{10, 10, 30, 20}));
  controller.OnLeftUp(at(30, 15));
  MoveTo(at(35, 15));
  EXPECT_EQ(Roi(0), (Rect{10, 10, 30, 20}));  // the drag ended
  EXPECT_EQ(host.cursor, CursorShape::Arrow);
}

TEST_F(ViewerInspectionTest, CopyPixelFollowsBaseAndOffset) {
  AddGray(64, 48, "a.raw");
  Start();
  controller.Execute(Command::CopyPixelText);
  EXPECT_EQ(host.clipboard, "64x48");  // outside every image
  MoveTo(At(3, 2));
  controller.Execute(Command::CopyPixelText);
  EXPECT_EQ(host.clipboard, "<3,2> =<203>");
  controller.Execute(Command::ToggleOffset);
  MoveTo(At(4, 2));
  controller.Execute(Command::CopyPixelText);
  EXPECT_EQ(host.clipboard, "[132]<4,2> =<204>");
  controller.Execute(Command::ToggleHex);
  MoveTo(At(3, 2));
  controller.Execute(Command::CopyPixelText);
  EXPECT_EQ(host.clipboard, "[0x83] <3,2> =<0xCB>");
}

TEST_F(ViewerInspectionTest, TrackingLinesAndTheGridOutlineFollowTheCursor) {
  AddGray(64, 48, "a.raw");
  Start();
  MoveTo(At(3, 2));
  PanelInspectionPlan inspect = controller.PrepareFrame().panels[0].inspect;
  ASSERT_TRUE(inspect.tracked.has_value());
  EXPECT_FALSE(inspect.tracking_lines);
  EXPECT_FALSE(inspect.outline);
  controller.Execute(Command::ToggleTracking);
  controller.Execute(Command::ToggleGrid);
  for (int i = 0; i < 4; ++i) controller.Execute(Command::ZoomIn);  // 1:5: the grid shows
  const ScreenRect& picture = controller.PrepareFrame().panels[0].picture;
  MoveTo({picture.left + 5 * 7 + 2, picture.top + 5 * 4});
  inspect = controller.PrepareFrame().panels[0].inspect;
  EXPECT_TRUE(inspect.tracking_lines);
  EXPECT_TRUE(inspect.outline);
  EXPECT_EQ(inspect.tracked, (ScreenRect{picture.left + 35, picture.top + 20, picture.left + 39,
                                         picture.top + 24}));
}

}  // namespace
}  // namespace korvanel
