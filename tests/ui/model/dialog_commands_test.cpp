#include <gtest/gtest.h>

#include <vector>

#include "support/temp_dir.h"
#include "ui/model/viewer_fixture.h"

namespace korvanel {
namespace {

class DialogCommands : public test::ViewerFixture {
 protected:
  void AddOne() { AddGray(4, 2, "a.raw"); }
};

TEST_F(DialogCommands, FilterKeysOpenTheDialogOnlyWithAnImage) {
  controller.Execute(Command::FilterDialog);
  controller.OnKey({Key::F, kCtrl});
  EXPECT_TRUE(host.dialogs.empty());
  AddOne();
  controller.OnImagesChanged();
  controller.OnChar(U'f', {});
  // Ctrl+F before any accepted filter opens the dialog instead.
  controller.OnKey({Key::F, kCtrl});
  EXPECT_EQ(host.dialogs, (std::vector<DialogId>{DialogId::Filter, DialogId::Filter}));
}

TEST_F(DialogCommands, CtrlFRepeatsTheAcceptedFilterAndShowsARefusal) {
  AddOne();
  controller.OnImagesChanged();
  CFilterColorsManager& filter = controller.Dialogs().filter;
  filter.expression = "0-1";
  filter.apply_to_new = true;
  ASSERT_FALSE(filter.Apply(app).has_value());
  ASSERT_EQ(app.Images().Count(), 2u);
  controller.OnDialogApplied();

  controller.OnKey({Key::F, kCtrl});
  EXPECT_TRUE(host.dialogs.empty());
  EXPECT_EQ(app.Images().Count(), 3u);
  EXPECT_TRUE(feedback.messages.empty());

  // The registry is full: the repeat is refused with the operation's box.
  while (app.Images().Count() < 20) AddOne();
  controller.OnImagesChanged();
  controller.OnKey({Key::F, kCtrl});
  EXPECT_EQ(feedback.messages,
            (std::vector<std::string>{"[Filter colors error]: Filter colors error: no free image slots"}));
}

TEST_F(DialogCommands, RulerSettingsReachTheFocusViewAndKeepOffsetsInScreenMode) {
  controller.Execute(Command::RulerSettings);
  EXPECT_TRUE(host.dialogs.empty());
  AddOne();
  controller.OnResize({800, 580});
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
  // Each apply records every field, the one not in force too.
  EXPECT_EQ(app.EditHistory().Entries(kRulerScreenSpacingTag), (std::vector<std::string>{"7,9", "100,100"}));

  ruler.screen_spacing = "0,9";
  const DialogResult refusal = controller.ApplyRulerSettings();
  ASSERT_TRUE(refusal.has_value());
  EXPECT_EQ(refusal->title, "Ruler settings error");
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).ruler.settings, (RulerSettings{true, 7, 9, 4, 5}));
}

TEST(DialogCommandsIEval, EReadsTheSavedListAgainUnlessReadAtStartOnly) {
  for (const bool startup_only : {false, true}) {
    test::TempDir dir;
    test::RecordingFeedback feedback;
    AppState app{feedback};
    ConfigValues values;
    values.system.ieval_file_path = (dir / "list.txt").string();
    values.system.ieval_load_saved_startup_only = startup_only;
    app.ApplyConfiguration(values);
    test::RecordingViewerHost host;
    ViewerSettings settings = ViewerSettings::FromConfig(values);
    CViewerController controller{app, host, settings};
    controller.OnKey({Key::E, {}});
    EXPECT_TRUE(host.dialogs.empty());
    app.RegisterImage(test::MakeImage<CImageGray>(8, 4, 2), "a.raw", "P,Y,8", false);
    EXPECT_TRUE(app.SavedIEvals().Names().empty());
    dir.Write("list.txt", "<Edited>\ni\n</Edited>\n");
    controller.OnKey({Key::E, {}});
    // Ctrl+E with nothing run yet opens the dialog too.
    controller.OnKey({Key::E, kCtrl});
    EXPECT_EQ(host.dialogs, (std::vector<DialogId>{DialogId::ImageEval, DialogId::ImageEval}));
    EXPECT_EQ(app.SavedIEvals().Names().size(), startup_only ? 0u : 1u) << startup_only;
  }
}

TEST_F(DialogCommands, CtrlERepeatsTheLastRunOnTheFocusImage) {
  AddOne();
  controller.OnImagesChanged();
  CImageEvalManager& ieval = controller.Dialogs().ieval;
  ieval.expression = "{255-i}";
  ASSERT_FALSE(ieval.Apply(app).has_value()) << feedback.messages.front();
  ASSERT_EQ(app.Images().Count(), 2u);
  controller.OnKey({Key::E, kCtrl});
  EXPECT_TRUE(host.dialogs.empty());
  EXPECT_EQ(app.Images().Count(), 3u);
  EXPECT_EQ(app.Images().At(2).display_name, "ieval_out_image");
}

}  // namespace
}  // namespace korvanel
