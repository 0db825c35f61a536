#include <gtest/gtest.h>

#include "app/app_state.h"
#include "app/configuration.h"
#include "image/color_transform.h"
#include "support/log_texts.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::FixedStamp;
using test::kEntryRule;
using test::ReadWholeFile;
using test::RecordingFeedback;
using test::StampedSessionStart;
using test::TempDir;

// The transforms in force are process-wide; put the defaults back afterwards.
class AppStateConfig : public ::testing::Test {
 protected:
  void TearDown() override {
    g_yuv_to_rgb = kDefaultYuvToRgb;
    g_rgb_to_yuv = kDefaultRgbToYuv;
  }
  TempDir dir;
  RecordingFeedback feedback;
};

TEST_F(AppStateConfig, MessagesAreNumberedEntriesOfTheApplicationLog) {
  CConfiguration config(dir.path());
  ASSERT_TRUE(config.Load(dir.Write("Korvanel.ini", "[developer]\nlog_app_msg=1, app.txt\n")));
  config.Logs().app.SetStampSource(FixedStamp);
  {
    AppState app(feedback, config);
    app.ShowMessage("Can't locate /x/a.raw", "File doesn't exist");
    app.ShowMessage("Illegal format 'Q'", "Image format string parse error");
    EXPECT_EQ(feedback.messages.size(), 2u);
  }
  EXPECT_EQ(ReadWholeFile(dir / "app.txt"),
            StampedSessionStart() + kEntryRule +
                "\nEntry 1: File doesn't exist\nCan't locate /x/a.raw\n\n" + kEntryRule +
                "\nEntry 2: Image format string parse error\nIllegal format 'Q'\n\n" + kEntryRule +
                "\nEntry 3: Session end mark\n\n");
}

TEST_F(AppStateConfig, AppliesTheSettingsItKeeps) {
  CConfiguration config(dir.path());
  ASSERT_TRUE(config.Load(dir.Write(
      "Korvanel.ini",
      "[gui]\ndef_zoom=0\n[image]\ndiff_type=mask_bin\n"
      "trans_yuv_to_rgb=1 0 0 0, 0 1 0 0, 0 0 1 0\n"
      "[system]\nmax_comparison_party=2\nmax_process_threads=-1\napp_close_prompt=always\n"
      "auto_file_naming=0\nformat_file_path=rules.fmt\n")));
  AppState app(feedback, config);
  EXPECT_EQ(app.MaxComparisonParty(), 2u);
  EXPECT_EQ(app.MaxProcessThreads(), -1);
  EXPECT_EQ(app.GetDiffType(), DiffType::kMaskBin);
  EXPECT_FALSE(app.AutoFileNaming());
  EXPECT_EQ(app.DefaultZoom(), 0.0);
  EXPECT_EQ(app.FormatFilePath(), "rules.fmt");
  EXPECT_EQ(app.WorkPath(), dir.path().string());
  EXPECT_EQ(g_yuv_to_rgb, (ColorTransform{{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}}}));
  EXPECT_EQ(g_rgb_to_yuv, kDefaultRgbToYuv);
  // "always" asks even with nothing unsaved.
  feedback.answer = false;
  EXPECT_FALSE(app.ConfirmExit());
  EXPECT_EQ(feedback.questions,
            (std::vector<std::string>{"[App exit]: Are you sure to want to exit?"}));
}

TEST_F(AppStateConfig, StatusMessagesAreLoggedUnderStatusBarExceptInConsoleMode) {
  CConfiguration config(dir.path());
  ASSERT_TRUE(config.Load(dir.Write("Korvanel.ini", "[developer]\nlog_app_msg=1, app.txt\n")));
  config.Logs().app.SetStampSource(test::FixedStamp);
  {
    AppState app(feedback, config);
    app.StatusMessage("Diff type: %s", "All pixels");
    app.SetConsoleMode(true);
    app.StatusMessage("Loading image %s...", "/x/a.raw");
  }
  EXPECT_EQ(feedback.statuses, (std::vector<std::string>{"Diff type: All pixels", "Loading image /x/a.raw..."}));
  EXPECT_EQ(test::ReadWholeFile(dir / "app.txt"),
            test::StampedSessionStart() + test::kEntryRule + "\nEntry 1: Status bar\nDiff type: All pixels\n\n" +
                test::kEntryRule + "\nEntry 2: Session end mark\n\n");
}

TEST_F(AppStateConfig, TheLogSwitchesTurnTheLogsOnAndOffAndKeepTheSetting) {
  CConfiguration config(dir.path());
  ASSERT_TRUE(config.Load(dir.Write("Korvanel.ini", "[developer]\nlog_app_msg=1, app.txt\ndebug_load_format_log=0\n")));
  AppState app(feedback, config);
  EXPECT_TRUE(app.AppLogEnabled());
  EXPECT_FALSE(app.FormatLogEnabled());
  app.SetAppLogEnabled(false);
  app.SetFormatLogEnabled(true);
  EXPECT_FALSE(app.AppLogEnabled());
  EXPECT_TRUE(app.FormatLogEnabled());
  EXPECT_FALSE(config.Values().developer.log_app_msg.enabled);
  EXPECT_TRUE(config.Values().developer.debug_load_format_log.enabled);
  app.ShowMessage("not logged", "title");
  config.Logs().app.Flush();
  EXPECT_FALSE(std::filesystem::exists(dir / "app.txt"));

  AppState without_config(feedback);
  without_config.SetAppLogEnabled(true);
  EXPECT_FALSE(without_config.AppLogEnabled());
}

}  // namespace
}  // namespace korvanel
