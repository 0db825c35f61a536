#include <gtest/gtest.h>

#include "app/app_state.h"
#include "app/configuration.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"
#include "ui/model/recording_viewer_host.h"
#include "ui/model/viewer_controller.h"

namespace korvanel {
namespace {

TEST(DeveloperTogglesTest, EachMenuItemFlipsItsSettingAndCheckMark) {
  test::TempDir dir;
  CConfiguration config(dir.path());
  ASSERT_TRUE(config.Load(dir.Write("Korvanel.ini",
                                    "[developer]\nlog_app_msg=1, app.txt\ndebug_load_format_log=0\n"
                                    "save_image_text_hex_c_array=0\nfavor_low_mem_over_speed=1\n")));
  test::RecordingFeedback feedback;
  AppState app(feedback, config);
  test::RecordingViewerHost host;
  CViewerController controller(app, host, ViewerSettings{});
  controller.OnFirstShow();

  struct Row {
    Command command;
    bool (AppState::*setting)() const;
    bool configured;
  };
  const Row rows[] = {
      {Command::ToggleHexTextCLayout, &AppState::SaveTextHexCArray, false},
      {Command::ToggleFavorLowMemory, &AppState::FavorLowMemory, true},
      {Command::ToggleAppLog, &AppState::AppLogEnabled, true},
      {Command::ToggleFormatLog, &AppState::FormatLogEnabled, false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(static_cast<int>(row.command));
    EXPECT_EQ((app.*row.setting)(), row.configured);
    EXPECT_EQ(host.menu.at(row.command).checked, row.configured);
    controller.Execute(row.command);
    EXPECT_EQ((app.*row.setting)(), !row.configured);
    EXPECT_EQ(host.menu.at(row.command).checked, !row.configured);
    controller.Execute(row.command);
    EXPECT_EQ(host.menu.at(row.command).checked, row.configured);
  }
}

}  // namespace
}  // namespace korvanel
