#include "app/ieval_command.h"

#include <gtest/gtest.h>

#include "app/config_reader.h"
#include "app/feedback_progress.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "ops/job_runner.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"

namespace korvanel {
namespace {

using test::MakeImage;
using test::RecordingFeedback;

class IEvalCommandTest : public ::testing::Test {
 protected:
  IEvalCommandTest() {
    app.RegisterImage(MakeImage<CImageGray>(8, 6, 4), "a.raw", "P,Y,8", false);
    app.RegisterImage(MakeImage<CImageRgb>(8, 6, 4), "b.raw", "I,RGB,8", false);
  }
  static IEvalRequest Request(std::string expression, std::string override_list = "") {
    IEvalRequest request;
    request.expression = std::move(expression);
    request.output_override = std::move(override_list);
    return request;
  }
  uint32_t SampleOf(size_t index, uint32_t x, uint32_t y, uint32_t component = 0) const {
    const auto& image = dynamic_cast<const CImageConcreteBase&>(*app.Images().At(index).image);
    return image.GetPlane(component).SampleAt(x, y);
  }

  RecordingFeedback feedback;
  AppState app{feedback};
};

TEST_F(IEvalCommandTest, NewResultsAreRegisteredAsUnsavedImages) {
  ASSERT_TRUE(RunIEvalCommand(app, Request("{i1+1} {i2c3}"), {0, 1}));
  ASSERT_EQ(app.Images().Count(), 4u);
  for (size_t index : {2, 3}) {
    const ImageRecord& record = app.Images().At(index);
    EXPECT_EQ(record.display_name, "ieval_out_image");
    EXPECT_EQ(record.format_text, "P,Y,8");
    EXPECT_EQ(record.hk_id, index + 1);
    EXPECT_TRUE(app.IsCreatedUnsaved(record.image.get()));
  }
  // MakeImage: component c at (x, y) is c*1000 + y*100 + x, kept to 8 bits.
  EXPECT_EQ(SampleOf(2, 3, 1), uint32_t{uint8_t(103)} + 1);
  EXPECT_EQ(SampleOf(3, 3, 1), uint32_t{uint8_t(2103)});
  EXPECT_TRUE(feedback.messages.empty());
  ASSERT_FALSE(feedback.statuses.empty());
  EXPECT_TRUE(feedback.statuses.back().starts_with("I-Eval: Finished in ")) << feedback.statuses.back();
}

TEST_F(IEvalCommandTest, ReplacedImagesKeepTheirPlaceAndHkId) {
  ASSERT_TRUE(RunIEvalCommand(app, Request("{i1*2}", "1"), {0, 1}));
  ASSERT_EQ(app.Images().Count(), 2u);
  const ImageRecord& record = app.Images().At(0);
  EXPECT_EQ(record.display_name, "a.raw");
  EXPECT_EQ(record.hk_id, 1u);
  EXPECT_EQ(record.format_text, "P,Y,8");
  EXPECT_EQ(SampleOf(0, 2, 0), 4u);
  EXPECT_TRUE(app.IsCreatedUnsaved(record.image.get()));
}

TEST_F(IEvalCommandTest, FailuresAreShownAndNothingIsRegistered) {
  EXPECT_FALSE(RunIEvalCommand(app, Request("{$missing$}"), {0}));
  EXPECT_FALSE(RunIEvalCommand(app, Request("{i/(x-2)}"), {0}));
  EXPECT_EQ(app.Images().Count(), 2u);
  EXPECT_EQ(feedback.messages,
            (std::vector<std::string>{
                "[Image Evaluator]: I-Eval error: Unknown name marker 'missing' in pos 1",
                "[I-Eval run-time error]: Error(s) in I-Eval #1:\n"
                "Eval single channel output run-time error at (2,0)\n"
                "Divide by zero: right of 2 is zero"}));
  EXPECT_TRUE(feedback.statuses.back().starts_with("I-Eval: Aborted after ")) << feedback.statuses.back();
}

TEST(FeedbackProgressTest, PercentIsTruncatedAndCapped) {
  struct Case {
    uint64_t done, total;
    uint32_t percent;
  };
  const Case cases[] = {{0, 200, 0}, {1, 200, 0}, {199, 200, 99}, {200, 200, 100}, {450, 200, 100}, {5, 0, 100}};
  for (const Case& c : cases) {
    EXPECT_EQ(CFeedbackProgress::Percent(c.done, c.total), c.percent) << c.done << "/" << c.total;
  }
}

class ProgressRecorder : public RecordingFeedback {
 public:
  void Progress(std::string_view title, uint32_t percent) override {
    shown.push_back(std::string(title) + " " + std::to_string(percent) + "%");
  }
  std::vector<std::string> shown;
};

TEST(FeedbackProgressTest, SamplesReachTheFeedbackWithTheStageTitle) {
  ProgressRecorder feedback;
  CFeedbackProgress progress(feedback);
  progress.Start("Image Evaluator (2/3)", 400);
  progress.OnProgress(250, 100);
  progress.OnProgress(500, 400);
  EXPECT_EQ(feedback.shown,
            (std::vector<std::string>{"Image Evaluator (2/3) 25%", "Image Evaluator (2/3) 100%"}));
}

TEST(AppStateJobsTest, TheConfiguredMaximumSizesThePool) {
  RecordingFeedback feedback;
  struct Case {
    int32_t configured;
    uint32_t slots;
    bool pool;
  };
  const Case cases[] = {{-1, 1, false}, {1, 1, true}, {0, LogicalProcessorCount(), true}};
  for (const Case& c : cases) {
    AppState app(feedback);
    ConfigValues values;
    ResetConfigValues(values, ".");
    values.system.max_process_threads = c.configured;
    app.ApplyConfiguration(values);
    EXPECT_EQ(app.Jobs().JobSlots(), c.slots) << c.configured;
    EXPECT_EQ(app.Jobs().Pool() != nullptr, c.pool) << c.configured;
  }
}

}  // namespace
}  // namespace korvanel
