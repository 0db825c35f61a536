#pragma once

// The setup the controller tests share: an app with recording feedback, a
// recording window, a controller with default settings, and the inputs and
// readings most tests need. Images come from MakeImage: component c at
// (x, y) holds c*1000 + y*100 + x.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/app_state.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"
#include "ui/model/recording_viewer_host.h"
#include "ui/model/text_metrics.h"
#include "ui/model/viewer_controller.h"

namespace korvanel::test {

// The image area of the tests' window: one panel of 780 x 520.
inline constexpr ScreenSize kImageArea{800, 580};

// Every character four pixels wide and ten high, so captions and value
// templates have known extents.
class FixedMetrics : public ITextMetrics {
 public:
  int32_t Width(FontRole, std::string_view text) const override {
    return 4 * static_cast<int32_t>(text.size());
  }
  int32_t Height(FontRole) const override { return 10; }
};

class ViewerFixture : public ::testing::Test {
 protected:
  size_t AddGray(uint32_t w, uint32_t h, const std::string& name) {
    return app.RegisterImage(MakeImage<CImageGray>(8, w, h), name, "P,Y,8", false);
  }
  size_t AddRgb(uint32_t w, uint32_t h, const std::string& name) {
    return app.RegisterImage(MakeImage<CImageRgb>(16, w, h), name, "I,RGB,16", false);
  }
  void Start(ScreenSize area = kImageArea) {
    controller.OnResize(area);
    controller.PrepareFrame();
  }
  const FramePlan& Frame() { return controller.PrepareFrame(); }
  void Press(Key key, Modifiers mods = {}) { controller.OnKey({key, mods}); }
  void Type(std::u32string_view text) {
    for (char32_t ch : text) controller.OnChar(ch, {});
  }
  // Moves wait for a frame after a change: one is prepared first.
  void MoveTo(ScreenPoint p, Modifiers m = {}) {
    controller.PrepareFrame();
    controller.OnMouseMove(p, m);
  }
  void Click(ScreenPoint p) {
    controller.PrepareFrame();
    controller.OnLeftDown(p, {});
    controller.OnLeftUp(p);
  }
  // The screen point of image pixel (x, y) in panel `panel` at 1:1.
  ScreenPoint At(int32_t x, int32_t y, size_t panel = 0) {
    const ScreenRect& picture = Frame().panels.at(panel).picture;
    return {picture.left + x, picture.top + y};
  }
  const StatusFields& LastStatus() const { return host.statuses.back(); }
  const std::string& Part0() const { return LastStatus().parts[kStatusReadoutPart]; }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (size_t i = 0; i < app.Images().Count(); ++i) names.push_back(app.Images().At(i).display_name);
    return names;
  }
  std::vector<std::string> Tabs() {
    std::vector<std::string> texts;
    for (const PanelPlan& panel : Frame().panels) texts.push_back(panel.tab.text);
    return texts;
  }

  RecordingFeedback feedback;
  AppState app{feedback};
  RecordingViewerHost host;
  CViewerController controller{app, host, ViewerSettings{}};
};

}  // namespace korvanel::test
