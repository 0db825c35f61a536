#include <gtest/gtest.h>

#include "app/convert_command.h"
#include "app/diff_command.h"
#include "image/image_gray.h"
#include "ops/job_runner.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"

namespace korvanel {
namespace {

// Records each long operation's title and what the state said while it ran.
class LongOperationFeedback : public test::RecordingFeedback {
 public:
  void RunLongOperation(std::string_view title, const std::function<void()>& run,
                        const std::function<void()>& cancel) override {
    titles.emplace_back(title);
    running_during.push_back(app != nullptr && app->OperationRunning());
    (void)cancel;
    run();
  }
  AppState* app = nullptr;
  std::vector<std::string> titles;
  std::vector<bool> running_during;
};

class LongOperationTest : public ::testing::Test {
 protected:
  LongOperationTest() { feedback.app = &app; }
  void AddPair() {
    for (const char* name : {"/p/a.y8", "/p/b.y8"}) {
      app.RegisterImage(test::MakeImage<CImageGray>(8, 64, 64), name, "P,Y,8", false);
    }
    app.ForceComparison({0, 1});
  }
  bool PoolPresent() { return app.Jobs().Pool() != nullptr; }

  LongOperationFeedback feedback;
  AppState app{feedback};
};

TEST_F(LongOperationTest, OperationsRunThroughTheFeedbackUnderTheirTitles) {
  if (!PoolPresent()) GTEST_SKIP() << "no worker pool on this machine";
  AddPair();
  EXPECT_FALSE(app.OperationRunning());
  ASSERT_TRUE(DiffComparison(app, CurrentDiffCode(app)).done);
  ConvertCommand convert;
  convert.index = 0;
  convert.target_text = "I,RGB,8";
  ASSERT_TRUE(RunConvertCommand(app, convert).done);
  EXPECT_EQ(feedback.titles, (std::vector<std::string>{"Image Difference", "Image Convert"}));
  EXPECT_EQ(feedback.running_during, (std::vector<bool>{true, true}));
  EXPECT_FALSE(app.OperationRunning());
}

TEST_F(LongOperationTest, BatchConsoleRunsBlockWithoutTheFeedback) {
  if (!PoolPresent()) GTEST_SKIP() << "no worker pool on this machine";
  AddPair();
  app.SetCommandsPresent(true);
  app.SetConsoleMode(true);
  ASSERT_TRUE(DiffComparison(app, CurrentDiffCode(app)).done);
  EXPECT_TRUE(feedback.titles.empty());
  EXPECT_EQ(app.Jobs().RunHost(), nullptr);
}

}  // namespace
}  // namespace korvanel
