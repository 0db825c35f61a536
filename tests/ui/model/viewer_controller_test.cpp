#include "ui/model/viewer_controller.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/config_reader.h"
#include "support/temp_dir.h"
#include "ui/model/geometry_printers.h"
#include "ui/model/readout.h"
#include "ui/model/viewer_fixture.h"

namespace korvanel {
namespace {

class ViewerControllerTest : public test::ViewerFixture {
 protected:
  const std::string& ZoomPart() const { return LastStatus().parts[kStatusZoomPart]; }
};

// The zoom text follows each key, and the status is sent only when it changes.
TEST_F(ViewerControllerTest, ZoomKeysStepTheZoomTextInTheFourthPart) {
  AddGray(64, 48, "a.raw");
  controller.OnResize(test::kImageArea);
  EXPECT_EQ(ZoomPart(), "1:1");
  const std::pair<Key, const char*> steps[] = {
      {Key::KeypadPlus, "1:2"},  {Key::KeypadPlus, "1:3"},     {Key::KeypadMinus, "1:2"},
      {Key::KeypadMinus, "1:1"}, {Key::KeypadMinus, "F2W"},    {Key::KeypadMinus, "0.90"},
      {Key::KeypadMinus, "0.81"}, {Key::KeypadMultiply, "F2W"}, {Key::KeypadPlus, "1:1"},
  };
  for (const auto& [key, text] : steps) {
    Press(key);
    EXPECT_EQ(ZoomPart(), text);
    EXPECT_EQ(controller.ZoomText(), text);
  }
  for (int i = 0; i < 30; ++i) Press(Key::KeypadPlus);
  EXPECT_EQ(ZoomPart(), "1:100");
  const size_t sent = host.statuses.size();
  Press(Key::KeypadPlus);  // 100 stays 100
  Press(Key::Q);           // unbound
  controller.PrepareFrame();
  EXPECT_EQ(host.statuses.size(), sent);
  Press(Key::KeypadMinus);
  EXPECT_EQ(host.statuses.size(), sent + 1);
  EXPECT_EQ(ZoomPart(), "1:90");
}

TEST_F(ViewerControllerTest, StartsFromTheConfiguredZoomAndModes) {
  test::TempDir dir;
  ConfigValues values;
  ResetConfigValues(values, dir.path());
  values.gui.def_zoom = 0;
  values.gui.grid_mode = true;
  values.gui.ruler_mode = true;
  values.gui.ruler_type_matrix = true;
  values.gui.pixel_display_base = PixelBase::kHex;
  values.gui.coord_track_mode = true;
  app.ApplyConfiguration(values);
  AddGray(64, 48, "a.raw");
  CViewerController fitted{app, host, ViewerSettings::FromConfig(values)};
  fitted.OnResize(test::kImageArea);
  const FramePlan& plan = fitted.PrepareFrame();
  EXPECT_EQ(fitted.ZoomText(), "F2W");
  ASSERT_EQ(plan.panels.size(), 1u);
  EXPECT_TRUE(plan.panels[0].stretch);
  EXPECT_EQ(plan.panels[0].picture, (ScreenRect{54, 49, 746, 568}));
  EXPECT_EQ(LastStatus().parts, (std::array<std::string, 5>{kOutOfRangeText, "", "G M", "F2W", "X T"}));
}

TEST_F(ViewerControllerTest, ZoomKeepsTheCentreOfTheFocusImage) {
  AddGray(2000, 1000, "big.raw");
  controller.OnResize(test::kImageArea);
  controller.OnScroll(Axis::Horizontal, ScrollAction::Thumb, 600);
  controller.OnScroll(Axis::Vertical, ScrollAction::Thumb, 200);
  // Visible 600..1379 x 200..719: centre (989, 459).
  Press(Key::KeypadPlus);
  EXPECT_EQ(host.horizontal, (ScrollBarState{3220, 780, 2, 1588, true}));
  EXPECT_EQ(host.vertical, (ScrollBarState{1480, 520, 2, 658, true}));
  const PanelPlan& panel = controller.PrepareFrame().panels.at(0);
  EXPECT_EQ(panel.source, (PixelRect{794, 329, 1183, 588}));
  EXPECT_EQ(panel.origin, (ScreenPoint{10 - 1588, 49 - 658}));
  EXPECT_EQ(panel.k, 2u);
}

TEST_F(ViewerControllerTest, ZoomSetsTheSameZoomOnEveryPartyImage) {
  AddGray(64, 48, "a.raw");
  AddGray(64, 48, "b.raw");
  AddGray(64, 48, "c.raw");
  app.CompareImages({0, 1});
  ASSERT_TRUE(app.CompareMode());
  controller.OnResize(test::kImageArea);
  Press(Key::KeypadPlus);
  const FramePlan& plan = controller.PrepareFrame();
  ASSERT_EQ(plan.panels.size(), 2u);  // where they lie is the layout's
  for (const PanelPlan& panel : plan.panels) EXPECT_EQ(panel.k, 2u);
  EXPECT_EQ(LastStatus().parts[kStatusModePart], "C");

  app.LeaveCompareMode();
  app.SetFocus(2);
  const FramePlan& single = controller.PrepareFrame();
  ASSERT_EQ(single.panels.size(), 1u);
  EXPECT_EQ(single.panels[0].k, 1u);  // c.raw was not in the party
  EXPECT_EQ(ZoomPart(), "1:1");
}

TEST_F(ViewerControllerTest, TabCyclesTheFocusImageInSingleView) {
  AddGray(8, 8, "a.raw");
  AddGray(8, 8, "b.raw");
  AddGray(8, 8, "c.raw");
  controller.OnResize(test::kImageArea);
  EXPECT_EQ(Tabs(), (std::vector<std::string>{"[3] c.raw"}));
  Press(Key::Tab);
  EXPECT_EQ(app.FocusIndex(), 0u);
  EXPECT_EQ(Tabs(), (std::vector<std::string>{"[1] a.raw"}));
  Press(Key::Tab, kShift);
  Press(Key::Tab, kShift);
  EXPECT_EQ(app.FocusIndex(), 1u);
  EXPECT_EQ(feedback.statuses.back(), "8x8 : " + app.Images().At(1).image->FormatLabel());
}

TEST_F(ViewerControllerTest, DigitsSelectSlotsAndTheBackKeyReturns) {
  for (int i = 0; i < 12; ++i) AddGray(4, 4, "img" + std::to_string(i));
  controller.OnResize(test::kImageArea);
  const std::pair<char32_t, size_t> steps[] = {
      {U'2', 1},  {U'0', 9},  {U'!', 10}, {U'@', 11}, {U')', 11},  // slot 20 is empty
      {U'`', 10}, {U'~', 11}, {U'1', 0},  {U'*', 0},               // '*' unshifted: keypad star
  };
  for (const auto& [ch, focus] : steps) {
    controller.OnChar(ch, {});
    EXPECT_EQ(app.FocusIndex(), focus) << static_cast<char>(ch);
  }
  controller.OnChar(U'*', kShift);  // Shift+8: slot 18 is empty
  EXPECT_EQ(app.FocusIndex(), 0u);
}

TEST_F(ViewerControllerTest, LayerModeShowsOnePartyImageAndTabPicksTheLayer) {
  AddGray(16, 16, "a.raw");
  AddGray(16, 16, "b.raw");
  AddGray(16, 16, "c.raw");
  app.CompareImages({0, 1, 2});
  controller.OnResize(test::kImageArea);
  EXPECT_EQ(controller.PrepareFrame().panels.size(), 3u);
  Press(Key::Tab);  // side by side: nothing
  EXPECT_EQ(controller.PrepareFrame().panels.size(), 3u);

  controller.Execute(Command::ToggleLayerMode);
  EXPECT_TRUE(host.menu[Command::ToggleLayerMode].checked);
  const size_t first = app.FocusIndex();
  EXPECT_EQ(Tabs(), (std::vector<std::string>{"1 2 3 | [" + std::to_string(first + 1) + "] " +
                                                  app.Images().At(first).display_name}));
  Press(Key::Tab);
  const size_t second = (first + 1) % 3;
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).image_index, second);
  controller.OnChar(U'`', {});
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).image_index, first);
  controller.OnChar(U'2', {});
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).image_index, 1u);
  Press(Key::Escape);
  EXPECT_EQ(controller.PrepareFrame().panels.size(), 3u);
}

TEST_F(ViewerControllerTest, ArrowsWheelAndScrollBarsMoveTheView) {
  AddGray(2000, 1000, "big.raw");
  controller.OnResize(test::kImageArea);
  EXPECT_EQ(host.horizontal, (ScrollBarState{1220, 780, 1, 0, true}));
  struct Step {
    const char* name;
    void (*act)(CViewerController&);
    int32_t h;
    int32_t v;
  };
  const Step steps[] = {
      {"right", [](CViewerController& c) { c.OnKey({Key::Right, {}}); }, 780, 0},
      {"right to the end", [](CViewerController& c) { c.OnKey({Key::Right, {}}); }, 1220, 0},
      {"left", [](CViewerController& c) { c.OnKey({Key::Left, {}}); }, 440, 0},
      {"down", [](CViewerController& c) { c.OnKey({Key::Down, {}}); }, 440, 480},
      {"up", [](CViewerController& c) { c.OnKey({Key::Up, {}}); }, 440, 0},
      {"wheel back", [](CViewerController& c) { c.OnWheel(-1, {}); }, 440, 480},
      {"wheel forward", [](CViewerController& c) { c.OnWheel(1, {}); }, 440, 0},
      {"shift wheel back", [](CViewerController& c) { c.OnWheel(-1, kShift); }, 1220, 0},
      {"shift wheel forward", [](CViewerController& c) { c.OnWheel(1, kShift); }, 440, 0},
      {"line down", [](CViewerController& c) { c.OnScroll(Axis::Vertical, ScrollAction::LineDown, 0); }, 440, 1},
      {"page down", [](CViewerController& c) { c.OnScroll(Axis::Vertical, ScrollAction::PageDown, 0); }, 440, 480},
      {"line up", [](CViewerController& c) { c.OnScroll(Axis::Vertical, ScrollAction::LineUp, 0); }, 440, 479},
      {"thumb", [](CViewerController& c) { c.OnScroll(Axis::Horizontal, ScrollAction::Thumb, 77); }, 77, 479},
  };
  for (const Step& step : steps) {
    step.act(controller);
    EXPECT_EQ(host.horizontal.position, step.h) << step.name;
    EXPECT_EQ(host.vertical.position, step.v) << step.name;
    const PanelPlan& panel = controller.PrepareFrame().panels.at(0);
    EXPECT_EQ(panel.origin, (ScreenPoint{10 - step.h, 49 - step.v})) << step.name;
    EXPECT_EQ(panel.source.left, step.h) << step.name;
  }
  controller.OnWheel(1, kCtrl);
  EXPECT_EQ(ZoomPart(), "1:2");
}

TEST_F(ViewerControllerTest, ScrollOffsetsGoToEveryPartyImage) {
  AddGray(2000, 1000, "a.raw");
  AddGray(2000, 1000, "b.raw");
  app.CompareImages({0, 1});
  controller.OnResize(test::kImageArea);
  Press(Key::Right);
  const FramePlan& plan = controller.PrepareFrame();
  ASSERT_EQ(plan.panels.size(), 2u);
  EXPECT_EQ(plan.panels[0].source.left, 380);
  EXPECT_EQ(plan.panels[1].source.left, 380);
}

TEST_F(ViewerControllerTest, ScrollBarsAreDisabledWhenNothingScrolls) {
  AddGray(64, 48, "a.raw");
  controller.OnResize(test::kImageArea);
  EXPECT_FALSE(host.horizontal.enabled);
  EXPECT_FALSE(host.vertical.enabled);
  EXPECT_EQ(host.horizontal.maximum, 0);
  Press(Key::Right);
  const PanelPlan& panel = controller.PrepareFrame().panels.at(0);
  EXPECT_EQ(panel.picture, (ScreenRect{368, 285, 431, 332}));  // centred, offsets 0
  EXPECT_EQ(panel.origin, (ScreenPoint{368, 285}));
  for (int i = 0; i < 12; ++i) Press(Key::KeypadPlus);  // 1:25 -> 1600 x 1200 scrolls
  EXPECT_TRUE(host.horizontal.enabled);
  EXPECT_EQ(host.horizontal.maximum, 1600 - 780);
}

TEST_F(ViewerControllerTest, ViewTogglesShowInTheStatusLettersAndMenuChecks) {
  AddGray(64, 48, "a.raw");
  app.SetSaveTextHexCArray(true);
  controller.OnResize(test::kImageArea);  // first show: the check marks
  EXPECT_TRUE(host.menu[Command::ToggleHexTextCLayout].checked);
  EXPECT_FALSE(host.menu[Command::ToggleGrid].checked);
  EXPECT_EQ(LastStatus().parts, (std::array<std::string, 5>{kOutOfRangeText, "", "", "1:1", ""}));
  Press(Key::G);
  Press(Key::V);
  controller.OnChar(U'r', {});
  EXPECT_EQ(LastStatus().parts[kStatusFeaturePart], "G V R");
  Press(Key::M);
  EXPECT_EQ(LastStatus().parts[kStatusFeaturePart], "G V M");
  Press(Key::H);
  controller.OnChar(U't', {});
  controller.OnChar(U'O', {});
  EXPECT_EQ(LastStatus().parts[kStatusModePart], "X T O");
  EXPECT_TRUE(host.menu[Command::ToggleGrid].checked);
  EXPECT_TRUE(host.menu[Command::ToggleRulerMatrix].checked);
  EXPECT_TRUE(host.menu[Command::ToggleOffset].checked);
  controller.OnChar(U'o', {});
  controller.OnChar(U'T', {});
  Press(Key::G, kShift);
  EXPECT_EQ(LastStatus().parts[kStatusModePart], "X");
  EXPECT_EQ(LastStatus().parts[kStatusFeaturePart], "V M");
  EXPECT_FALSE(host.menu[Command::ToggleGrid].checked);
}

TEST_F(ViewerControllerTest, GridShowsFromZoomFiveAndValuesWhenTheTemplateFits) {
  AddGray(8, 8, "a.raw");
  app.RegisterImage(test::MakeImage<CImageRgb>(8, 8, 8), "rgb.raw", "I,RGB,8", false);
  app.CompareImages({0, 1});
  test::FixedMetrics metrics;
  controller.SetTextMetrics(&metrics);
  controller.OnResize(test::kImageArea);
  Press(Key::G);
  Press(Key::V);
  Press(Key::H);
  struct Case {
    int zoom_ins;
    uint32_t k;
    bool grid;
    bool gray_values;  // "255" is 12 x 10 pixels
    bool rgb_values;   // "255,10,10" is 36 x 10 pixels
  };
  const Case cases[] = {{3, 4, false, false, false}, {1, 5, true, false, false},
                        {5, 10, true, false, false}, {1, 15, true, true, false},
                        {4, 35, true, true, false},  {1, 40, true, true, true}};
  for (const Case& c : cases) {
    for (int i = 0; i < c.zoom_ins; ++i) Press(Key::KeypadPlus);
    const FramePlan& plan = controller.PrepareFrame();
    ASSERT_EQ(plan.panels.size(), 2u);
    const PanelPlan& gray = plan.panels[0];
    const PanelPlan& rgb = plan.panels[1];
    EXPECT_EQ(gray.k, c.k);
    EXPECT_EQ(rgb.k, c.k);
    EXPECT_EQ(gray.grid, c.grid) << c.k;
    EXPECT_EQ(rgb.grid, c.grid) << c.k;
    EXPECT_EQ(gray.values.show, c.gray_values) << c.k;
    EXPECT_EQ(rgb.values.show, c.rgb_values) << c.k;
  }
  const auto format = [&](size_t panel) { return std::string(Frame().panels.at(panel).values.format); };
  EXPECT_EQ(format(0) + " " + format(1), "%X %X,%X,%X");
  Press(Key::H);
  EXPECT_EQ(format(0) + " " + format(1), "%u %u,%u,%u");
}

TEST_F(ViewerControllerTest, RulerColourFollowsTheImageUnderTheMouse) {
  ViewerSettings settings;
  settings.ruler_colors = {{255, 0, 0}, {255, 255, 255}, {0, 0, 255}};
  CViewerController ruled{app, host, settings};
  AddGray(64, 48, "a.raw");
  AddGray(64, 48, "b.raw");
  AddGray(64, 48, "c.raw");
  app.CompareImages({0, 1, 2});
  ruled.OnResize(test::kImageArea);
  const auto colors = [&] {
    std::vector<Rgb> seen;
    for (const PanelPlan& panel : ruled.PrepareFrame().panels) seen.push_back(panel.ruler.color);
    return seen;
  };
  const Rgb red{255, 0, 0};
  const Rgb white{255, 255, 255};
  const Rgb blue{0, 0, 255};
  EXPECT_EQ(colors(), (std::vector<Rgb>{red, red, red}));
  ruled.OnKey({Key::R, kCtrl});  // mouse over none: the whole party, led by the left-most
  EXPECT_EQ(colors(), (std::vector<Rgb>{white, white, white}));
  const ScreenRect second = ruled.PrepareFrame().panels[1].picture;
  ruled.OnMouseMove({second.left + 1, second.top + 1}, {});
  ruled.OnKey({Key::R, kCtrl});
  EXPECT_EQ(colors(), (std::vector<Rgb>{white, blue, white}));
  ruled.OnKey({Key::M, {}});
  const FramePlan& plan = ruled.PrepareFrame();
  EXPECT_EQ(plan.panels[1].ruler.type, RulerType::Matrix);
  EXPECT_EQ(plan.panels[0].ruler.type, RulerType::Indent);
}

TEST_F(ViewerControllerTest, WithoutImagesOnlyHelpKeysWork) {
  controller.OnResize(test::kImageArea);
  const FramePlan& empty = controller.PrepareFrame();
  EXPECT_TRUE(empty.no_image.show);
  EXPECT_EQ(empty.no_image.invitation, "Drag one or more images to open them... (F1 for extra help)");
  EXPECT_TRUE(empty.panels.empty());
  EXPECT_EQ(LastStatus(), StatusFields{});
  Press(Key::KeypadPlus);
  controller.OnChar(U'r', {});
  controller.OnWheel(1, kCtrl);
  EXPECT_EQ(controller.ZoomText(), "1:1");
  EXPECT_FALSE(controller.State().flags.ruler);

  Press(Key::F1);
  EXPECT_TRUE(controller.State().help_visible);
  const std::pair<Key, uint32_t> pages[] = {
      {Key::Right, 1}, {Key::Up, 2},  {Key::End, 10}, {Key::Right, 10},
      {Key::Down, 9},  {Key::Home, 0}, {Key::Left, 0},
  };
  for (const auto& [key, page] : pages) {
    Press(key);
    EXPECT_EQ(controller.State().help_page, page);
  }
  controller.OnChar(U'7', {});
  EXPECT_EQ(controller.State().help_page, 7u);
  EXPECT_EQ(controller.PrepareFrame().help_page, 7u);
  Press(Key::Escape);
  EXPECT_FALSE(controller.State().help_visible);
}

TEST_F(ViewerControllerTest, StatusMessageShowsInPartZeroForSixteenTicks) {
  AddGray(8, 8, "a.raw");
  controller.OnResize(test::kImageArea);
  controller.ShowStatusMessage(std::string(600, 'm'));
  EXPECT_EQ(host.timers.at(TimerId::Status), 100u);
  EXPECT_EQ(LastStatus().parts[0], std::string(511, 'm'));
  for (int tick = 0; tick < 15; ++tick) controller.OnTimer(TimerId::Status);
  EXPECT_EQ(LastStatus().parts[0].size(), 511u);
  EXPECT_TRUE(host.timers.contains(TimerId::Status));
  controller.OnTimer(TimerId::Status);
  EXPECT_EQ(LastStatus().parts[0], kOutOfRangeText);  // the readout again
  EXPECT_FALSE(host.timers.contains(TimerId::Status));
}

TEST_F(ViewerControllerTest, FrameIsRecomposedOnlyWhenTheViewChanged) {
  AddGray(2000, 1000, "big.raw");
  controller.OnResize(test::kImageArea);
  EXPECT_TRUE(controller.PrepareFrame().base_dirty);
  EXPECT_FALSE(controller.PrepareFrame().base_dirty);
  Press(Key::Down);
  EXPECT_TRUE(controller.PrepareFrame().base_dirty);
  Press(Key::Q);
  EXPECT_FALSE(controller.PrepareFrame().base_dirty);
}

TEST_F(ViewerControllerTest, MouseMovesWaitForTheNextFrameAndLightTheTab) {
  AddGray(64, 48, "a.raw");
  controller.OnResize(test::kImageArea);
  controller.OnMouseMove({100, 20}, {});  // view still dirty: ignored
  EXPECT_TRUE(host.last_damage.empty());
  controller.PrepareFrame();
  controller.OnMouseMove({100, 20}, {});
  ASSERT_EQ(host.last_damage.size(), 1u);
  EXPECT_EQ(host.last_damage[0], (ScreenRect{10, 4, 789, 48}));
  EXPECT_TRUE(controller.PrepareFrame().panels[0].tab.hovered);
  EXPECT_FALSE(controller.PrepareFrame().panels[0].tab.close_hovered);
  controller.OnMouseMove({12, 6}, {});
  EXPECT_TRUE(controller.PrepareFrame().panels[0].tab.close_hovered);
}

TEST_F(ViewerControllerTest, TinyWindowsAndExtremeImagesLayOutWithoutFailing) {
  AddGray(1, 1, "dot.raw");
  AddGray(65535, 1, "line.raw");
  for (bool zoomed_out : {false, true}) {
    controller.OnResize(test::kImageArea);
    Press(Key::KeypadMultiply);
    if (zoomed_out) Press(Key::KeypadMinus);
    for (size_t index : {size_t{0}, size_t{1}}) {
      app.SetFocus(index);
      const PanelPlan& panel = controller.PrepareFrame().panels.at(0);
      EXPECT_GE(panel.picture.Width(), 1) << index;
      EXPECT_GE(panel.picture.Height(), 1) << index;
      EXPECT_NE(panel.rendition, nullptr);
    }
  }
  for (ScreenSize client : {ScreenSize{0, 0}, ScreenSize{5, 3}, ScreenSize{15, 20}}) {
    controller.OnResize(client);
    for (Key key : {Key::KeypadPlus, Key::Right, Key::Down, Key::KeypadMultiply,
                                Key::KeypadMinus, Key::Tab}) {
      Press(key);
      const FramePlan& plan = controller.PrepareFrame();
      for (const PanelPlan& panel : plan.panels) {
        EXPECT_TRUE(panel.picture.Empty());
        EXPECT_EQ(panel.rendition, nullptr);
      }
    }
    EXPECT_FALSE(host.horizontal.enabled);
    EXPECT_FALSE(host.vertical.enabled);
  }
}

TEST_F(ViewerControllerTest, EightPanelsInANarrowWindowStayEmpty) {
  for (int i = 0; i < 8; ++i) AddGray(32, 32, "p" + std::to_string(i));
  app.SetMaxComparisonParty(8);
  app.CompareImages({0, 1, 2, 3, 4, 5, 6, 7});
  controller.OnResize({120, 180});  // panels (120 - 160 + 1) / 8 wide
  Press(Key::KeypadPlus);
  const FramePlan& plan = controller.PrepareFrame();
  ASSERT_EQ(plan.panels.size(), 8u);
  for (const PanelPlan& panel : plan.panels) EXPECT_EQ(panel.rendition, nullptr);
}

TEST_F(ViewerControllerTest, OnlyDrawnImagesGetARendition) {
  for (int i = 0; i < 20; ++i) AddGray(16, 16, "i" + std::to_string(i));
  controller.OnResize(test::kImageArea);
  controller.PrepareFrame();
  EXPECT_EQ(controller.ViewCount(), 20u);
  uint32_t color = 0;
  for (size_t i = 0; i < 20; ++i) {
    EXPECT_EQ(app.Images().At(i).image->GetDisplayedValue(0, 0, color), i == 19) << i;
  }
  app.CloseImage(3);
  controller.PrepareFrame();
  EXPECT_EQ(controller.ViewCount(), 19u);
}

TEST_F(ViewerControllerTest, WindowMenuFocusesAndExitDestroysTheWindow) {
  AddGray(8, 8, "a.raw");
  AddGray(8, 8, "b.raw");
  controller.OnResize(test::kImageArea);
  controller.OnWindowMenu(0);
  EXPECT_EQ(app.FocusIndex(), 0u);
  controller.OnWindowMenu(7);
  EXPECT_EQ(app.FocusIndex(), 0u);
  EXPECT_FALSE(host.destroyed);
  controller.Execute(Command::Exit);
  EXPECT_TRUE(host.destroyed);
}

}  // namespace
}  // namespace korvanel
