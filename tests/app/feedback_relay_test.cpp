#include <gtest/gtest.h>

#include "app/app_state.h"
#include "app/feedback_relay.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

// The state keeps the relay it was made with; the window takes over the
// messages, menus and questions by retargeting it, and hands them back.
TEST(FeedbackRelay, TheStateReportsToWhicheverTargetIsSet) {
  test::TempDir dir;
  const std::string rules = dir.Write(
      "rules.fmt", "<format_group>\nfile_pattern = [.*\\.y8]\nwidth = 2\nheight = 1\nformat = [],P,Y,8\n</format_group>\n");
  dir.Write("a.y8", "ab");
  test::RecordingFeedback console;
  test::RecordingFeedback window;
  window.answer = false;
  CFeedbackRelay relay(console);
  AppState app(relay);
  ASSERT_TRUE(app.LoadFormats(rules));

  EXPECT_FALSE(app.OpenImage("gone.y8"));
  relay.SetTarget(window);
  EXPECT_EQ(&relay.Target(), &window);
  EXPECT_TRUE(app.OpenImage((dir / "a.y8").string()));
  EXPECT_FALSE(app.OpenImage("missing.y8"));
  app.SetCloseOption(CloseOption::Always);
  EXPECT_FALSE(app.ConfirmExit()) << "the window's answer counts";

  EXPECT_EQ(console.messages, (std::vector<std::string>{"[File doesn't exist]: Can't locate gone.y8"}));
  EXPECT_EQ(window.messages, (std::vector<std::string>{"[File doesn't exist]: Can't locate missing.y8"}));
  EXPECT_EQ(window.questions, (std::vector<std::string>{"[App exit]: Are you sure to want to exit?"}));
  EXPECT_TRUE(console.questions.empty());
  EXPECT_TRUE(window.has_images);
  ASSERT_EQ(window.menu.size(), 1u);
  EXPECT_EQ(window.menu[0].text, "[1] " + (dir / "a.y8").string());
  EXPECT_TRUE(console.menu.empty());

  relay.SetTarget(console);
  console.has_images = true;
  app.CloseAllImages();
  EXPECT_FALSE(console.has_images) << "teardown notifications reach the console, not a gone window";
  EXPECT_TRUE(window.has_images);
}

}  // namespace
}  // namespace korvanel
