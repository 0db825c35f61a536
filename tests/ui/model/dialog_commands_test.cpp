#include <gtest/gtest.h>

#include <vector>

#include "app/app_state.h"
#include "image/image_gray.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"
#include "ui/model/recording_viewer_host.h"
#include "ui/model/viewer_controller.h"

namespace korvanel {
namespace {

class DialogCommands : public ::testing::Test {
 protected:
  void AddGray() { app.RegisterImage(test::MakeImage<CImageGray>(8, 4, 2), "a.raw", "P,Y,8", false); }

  test::RecordingFeedback feedback;
  AppState app{feedback};
  test::RecordingViewerHost host;
  CViewerController controller{app, host, ViewerSettings{}};
};

TEST_F(DialogCommands, FilterKeysOpenTheDialogOnlyWithAnImage) {
  controller.Execute(Command::FilterDialog);
  controller.OnKey({Key::F, Modifiers{.ctrl = true}});
  EXPECT_TRUE(host.dialogs.empty());
  AddGray();
  controller.OnImagesChanged();
  controller.OnChar(U'f', {});
  // Ctrl+F before any accepted filter opens the dialog instead.
  controller.OnKey({Key::F, Modifiers{.ctrl = true}});
  EXPECT_EQ(host.dialogs, (std::vector<DialogId>{DialogId::Filter, DialogId::Filter}));
}

TEST_F(DialogCommands, CtrlFRepeatsTheAcceptedFilterAndShowsARefusal) {
  AddGray();
  controller.OnImagesChanged();
  CFilterColorsManager& filter = controller.Dialogs().filter;
  filter.expression = "0-1";
  filter.apply_to_new = true;
  ASSERT_FALSE(filter.Apply(app).has_value());
  ASSERT_EQ(app.Images().Count(), 2u);
  controller.OnDialogApplied();

  controller.OnKey({Key::F, Modifiers{.ctrl = true}});
  EXPECT_TRUE(host.dialogs.empty());
  EXPECT_EQ(app.Images().Count(), 3u);
  EXPECT_TRUE(feedback.messages.empty());

  // The registry is full: the repeat is refused with the operation's box.
  while (app.Images().Count() < 20) AddGray();
  controller.OnImagesChanged();
  controller.OnKey({Key::F, Modifiers{.ctrl = true}});
  EXPECT_EQ(feedback.messages,
            (std::vector<std::string>{"[Filter colors error]: Filter colors error: no free image slots"}));
}

TEST_F(DialogCommands, RulerSettingsReachTheFocusViewAndKeepOffsetsInScreenMode) {
  controller.Execute(Command::RulerSettings);
  EXPECT_TRUE(host.dialogs.empty());
  AddGray();
  controller.OnResize({800, 600}, 20);
  controller.OnChar(U'R', {});
  EXPECT_EQ(host.dialogs, (std::vector<DialogId>{DialogId::RulerSettings}));

  CRulerSettingsManager& ruler = controller.Dialogs().ruler;
  ruler.screen_pixels = false;
  ruler.image_spacing = "20,30";
  ruler.image_offset = "4,5";
  EXPECT_FALSE(controller.ApplyRulerSettings().has_value());
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).ruler.settings, (RulerSettings{false, 20, 30, 4, 5}));
  ruler.screen_pixels = true;
  ruler.screen_spacing = "7,9";
  EXPECT_FALSE(controller.ApplyRulerSettings().has_value());
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).ruler.settings, (RulerSettings{true, 7, 9, 4, 5}));
  EXPECT_EQ(app.EditHistory().Entries(kRulerScreenSpacingTag), (std::vector<std::string>{"7,9"}));

  ruler.screen_spacing = "0,9";
  const DialogResult refusal = controller.ApplyRulerSettings();
  ASSERT_TRUE(refusal.has_value());
  EXPECT_EQ(refusal->title, "Ruler settings error");
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).ruler.settings, (RulerSettings{true, 7, 9, 4, 5}));
}

}  // namespace
}  // namespace korvanel
