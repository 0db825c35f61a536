#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/model/geometry_printers.h"
#include "ui/model/readout.h"
#include "ui/model/viewer_fixture.h"

namespace korvanel {
namespace {

// Pixel readout, ROI by mouse, copy pixel and find marks as the controller
// drives them.
class ViewerInspectionTest : public test::ViewerFixture {
 protected:
  const Rect Roi(size_t index) const { return app.Images().At(index).image->GetRegionOfInterest(); }
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

// Types `text` as characters, each after its key-down, as the window does.
void TypeKeys(CViewerController& controller, std::u32string_view text) {
  for (char32_t ch : text) {
    const Key key = ch >= U'0' && ch <= U'9' ? static_cast<Key>(ch)
                    : ch == U' '             ? Key::Space
                    : ch == U'-'             ? Key::Minus
                                             : Key::Unknown;
    controller.OnKey({key, {}});
    controller.OnChar(ch, {});
  }
}

TEST_F(ViewerInspectionTest, JumpPhaseCentresRecordsAndMarksThePoint) {
  AddGray(2000, 1000, "big.raw");
  Start();
  controller.OnKey({Key::J, {}});
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::Jump);
  EXPECT_EQ(Part0(), "Jump to X Y: ");
  TypeKeys(controller, U"-1 -");
  EXPECT_EQ(Part0(), "Jump to X Y: -1 -");
  TypeKeys(controller, U"1 ");
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::None);
  EXPECT_EQ(controller.JumpHistory().Entries(), (std::vector<PixelPoint>{{1999, 999}}));
  // The view scrolls to the bottom-right corner; the centring rule keeps its
  // origin one pixel short of the far edges.
  const PanelPlan& panel = controller.PrepareFrame().panels.at(0);
  EXPECT_EQ(panel.source.right, 1998);
  EXPECT_EQ(panel.source.bottom, 998);
  ASSERT_EQ(panel.inspect.markers.size(), 1u);
  EXPECT_EQ(panel.inspect.markers[0].color, kJumpMarkerColor);
  EXPECT_EQ(host.timers.at(TimerId::Jump), 50u);

  // Jumping there again keeps one entry; the marker lives 20 ticks.
  controller.OnKey({Key::J, {}});
  TypeKeys(controller, U"1999 999 ");
  EXPECT_EQ(controller.JumpHistory().Entries().size(), 1u);
  for (int tick = 0; tick < 19; ++tick) controller.OnTimer(TimerId::Jump);
  EXPECT_TRUE(host.timers.contains(TimerId::Jump));
  controller.OnTimer(TimerId::Jump);
  EXPECT_FALSE(host.timers.contains(TimerId::Jump));
  EXPECT_TRUE(controller.PrepareFrame().panels.at(0).inspect.markers.empty());
}

TEST_F(ViewerInspectionTest, JumpFailuresEscAndTheSecondJEndThePhase) {
  AddGray(640, 480, "vga.raw");
  Start();
  const struct {
    std::u32string_view keys;
    const char* message;
  } cases[] = {
      {U"640 ", "640 is not a valid X coordinate, aborting..."},
      {U"639 480 ", "<639,480> is not a valid image coordinate, aborting..."},
  };
  for (const auto& c : cases) {
    controller.OnKey({Key::J, {}});
    TypeKeys(controller, c.keys);
    EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::None);
    EXPECT_EQ(Part0(), c.message);
  }
  EXPECT_TRUE(controller.JumpHistory().Entries().empty());
  controller.OnKey({Key::J, {}});
  controller.OnKey({Key::G, {}});  // taken by the phase: no grid
  EXPECT_FALSE(controller.State().flags.grid);
  controller.OnKey({Key::J, {}});
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::None);
  EXPECT_EQ(Part0(), "Operation canceled due to user abort");
  controller.OnKey({Key::J, {}});
  controller.Execute(Command::FindPixel);
  EXPECT_EQ(Part0(), "Can't find pixel while in other action");
  controller.OnKey({Key::Escape, {}});
  controller.Execute(Command::FindPixel);
  controller.Execute(Command::JumpToCoordinate);
  EXPECT_EQ(Part0(), "Can't jump to coordinate while in other action");
}

TEST_F(ViewerInspectionTest, FindMarksHitsAndStepsThroughThemBothWays) {
  // 7 at (1,0), (4,1) and (3,3) of a 5 x 4 grey image.
  app.RegisterImage(test::MakeGrayImage(8, 5, 4, [](uint32_t x, uint32_t y) {
                      return (x == 1 && y == 0) || (x == 4 && y == 1) || (x == 3 && y == 3) ? 7u : 200u;
                    }),
                    "sevens.raw", "P,Y,8", false);
  Start();
  controller.Execute(Command::FindPrevious);  // nothing searched yet: nothing happens
  EXPECT_EQ(Part0(), kOutOfRangeText);
  EXPECT_FALSE(host.menu[Command::ClearMarkedPixels].enabled);

  controller.OnKey({Key::Equal, {}});
  controller.OnChar(U'=', {});  // the key's own character is no part of the value
  EXPECT_EQ(Part0(), "Find pixel: ");
  TypeKeys(controller, U"7 ");
  EXPECT_EQ(Part0(), "Pixel value <7> found at <1,0>");
  EXPECT_TRUE(host.menu[Command::ClearMarkedPixels].enabled);
  EXPECT_EQ(host.timers.at(TimerId::Find), 25u);
  const struct {
    Key key;
    Modifiers mods;
    const char* message;
  } steps[] = {
      {Key::Equal, kCtrl, "Pixel value <7> found at <4,1> (Hit 2)"},
      {Key::Equal, kCtrl, "Pixel value <7> found at <3,3> (Hit 3)"},
      {Key::Equal, kCtrl, "Can't forward find more of pixel value <7>"},
      {Key::Equal, kShift, "Pixel value <7> found at <4,1> (Hit 2)"},
      {Key::Equal, kShift, "Pixel value <7> found at <1,0> (Hit 1)"},
      {Key::Equal, kShift, "Can't backward find more of pixel value <7>"},
  };
  for (const auto& step : steps) {
    controller.OnKey({step.key, step.mods});
    EXPECT_EQ(Part0(), step.message);
  }
  const std::vector<MarkPlan>& marks = controller.PrepareFrame().panels.at(0).inspect.marks;
  ASSERT_EQ(marks.size(), 3u);  // each pixel marked once
  EXPECT_EQ(marks[0].color, (Rgb{255, 255, 255}));  // contrast of a dark pixel

  controller.OnKey({Key::Minus, {}});  // the mouse is over no image: every image
  EXPECT_TRUE(controller.PrepareFrame().panels.at(0).inspect.marks.empty());
  EXPECT_FALSE(host.menu[Command::ClearMarkedPixels].enabled);

  controller.OnKey({Key::Equal, {}});
  TypeKeys(controller, U"9 ");
  EXPECT_EQ(Part0(), "Can't find pixel value <9>");
  controller.OnKey({Key::Equal, {}});
  TypeKeys(controller, U"1,2,3 ");
  EXPECT_EQ(Part0(), "'1,2,3' is not a valid pixel value for this image, aborting...");
  controller.OnKey({Key::Equal, {}});
  TypeKeys(controller, U"256 ");
  EXPECT_EQ(Part0(), "Component 1 '256' is out of BPP range, aborting...");
}

TEST_F(ViewerInspectionTest, PastesFeedTheRunningPhase) {
  AddGray(64, 48, "a.raw");
  Start();
  MoveTo(At(3, 2));
  controller.Execute(Command::CopyPixelText);
  controller.Execute(Command::JumpPasteCoordinate);  // starts the phase, then pastes
  EXPECT_EQ(Part0(), "Jump to X Y: 3 2");
  TypeKeys(controller, U" ");
  EXPECT_EQ(controller.JumpHistory().Entries(), (std::vector<PixelPoint>{{3, 2}}));
  controller.Execute(Command::FindPasteValue);
  EXPECT_EQ(Part0(), "Find pixel: 203");
  host.clipboard = "hello";
  controller.OnKey({Key::V, kCtrl});
  EXPECT_EQ(Part0(), "The clipboard holds no pixel copied with P");
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::Find);
}

}  // namespace
}  // namespace korvanel
