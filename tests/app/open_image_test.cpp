#include <gtest/gtest.h>

#include "app/app_state.h"
#include "support/collecting_sink.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

class ScriptedFeedback : public test::RecordingFeedback {
 public:
  bool AskOpenRawFormat(std::string_view, OpenRawAnswer& answer) override {
    if (answers.empty()) return false;
    answer = answers.front();
    answers.erase(answers.begin());
    return true;
  }
  std::vector<OpenRawAnswer> answers;
};

class OpenImageTest : public ::testing::Test {
 protected:
  OpenImageTest() {
    app.SetFormatLog(&trace);
    const std::string rules = dir.Write(
        "rules.fmt", "<format_group>\nfile_pattern = [.*\\.y8]\nwidth = 4\nheight = 2\nformat = [],P,Y,8\n</format_group>\n");
    EXPECT_TRUE(app.LoadFormats(rules));
  }
  void BatchConsole() {
    app.SetCommandsPresent(true);
    app.SetConsoleMode(true);
  }

  test::TempDir dir;
  ScriptedFeedback feedback;
  test::CollectingSink trace;
  AppState app{feedback};
};

TEST_F(OpenImageTest, OpensRegistersAndRefusesTheSamePathAgain) {
  const std::string path = dir.Write("frame.y8", "ABCDEFGH");
  ASSERT_TRUE(app.OpenImage(path));
  ASSERT_EQ(app.Images().Count(), 1u);
  EXPECT_EQ(app.Images().At(0).summary, "8 B | " + path);
  EXPECT_EQ(app.Images().At(0).format_text, "P,Y,8");
  EXPECT_TRUE(app.Images().At(0).file_attributes.valid);
  EXPECT_EQ(feedback.statuses.front(), "Loading image " + path + "...");
  EXPECT_EQ(trace.lines.back(), "Loaded " + path + " as GRAY");

  feedback.messages.clear();
  EXPECT_FALSE(app.OpenImage(path));
  EXPECT_FALSE(app.OpenImage(dir.path().string() + "/FRAME.Y8"));
  EXPECT_TRUE(feedback.messages.empty());
  EXPECT_EQ(app.Images().Count(), 1u);
}

TEST_F(OpenImageTest, MissingAndUnsupportedFilesSayWhy) {
  BatchConsole();
  EXPECT_FALSE(app.OpenImage(dir.File("nothing.y8")));
  EXPECT_EQ(feedback.messages.back(), "[File doesn't exist]: Can't locate " + dir.File("nothing.y8"));
  const std::string odd = dir.Write("odd.raw", "123");
  EXPECT_FALSE(app.OpenImage(odd));
  EXPECT_EQ(feedback.messages.back(), "[Open image error]: Can't open " + odd + " (unsupported format)");
  EXPECT_TRUE(app.Images().Empty());
}

TEST_F(OpenImageTest, ThePromptAsksUntilAnExpressionLoads) {
  const std::string path = dir.Write("dump.bin", std::string(12, '\x07'));
  feedback.answers = {{"P,Y,9", 2, 2}, {"P,Y,8", 2, 2}, {"i,rgb,8", 2, 2}};
  ASSERT_TRUE(app.OpenImage(path));
  EXPECT_EQ(feedback.messages,
            (std::vector<std::string>{"[Image format string parse error]: Illegal format 'P,Y,9'",
                                      "[Image format string parse error]: Can't open RAW format 'P,Y,8'"}));
  EXPECT_STREQ(app.Images().At(0).image->TypeName(), "RGB");
  // Cancelling ends quietly.
  const std::string other = dir.Write("other.bin", "xyz");
  feedback.messages.clear();
  EXPECT_FALSE(app.OpenImage(other));
  EXPECT_TRUE(feedback.messages.empty());
}

TEST_F(OpenImageTest, TheTwentyFirstOpenIsRefused) {
  for (int i = 0; i < 20; ++i) {
    ASSERT_TRUE(app.OpenImage(dir.Write("f" + std::to_string(i) + ".y8", "ABCDEFGH")));
  }
  EXPECT_FALSE(app.OpenImage(dir.Write("last.y8", "ABCDEFGH")));
  EXPECT_EQ(feedback.messages.back(), "[Open image error]: Too many open images, reached a max of 20");
  EXPECT_EQ(app.Images().Count(), 20u);
}

}  // namespace
}  // namespace korvanel
