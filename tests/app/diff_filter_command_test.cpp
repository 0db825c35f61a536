#include <gtest/gtest.h>

#include "app/convert_command.h"
#include "app/diff_command.h"
#include "app/filter_command.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"

namespace korvanel {
namespace {

using test::MakePlane;

template <typename Image>
std::unique_ptr<Image> Filled(uint32_t bits, uint32_t w, uint32_t h, uint32_t (*value)(uint32_t, uint32_t)) {
  auto image = std::make_unique<Image>();
  std::vector<Plane> planes;
  for (uint32_t c = 0; c < image->ComponentCount(); ++c) planes.push_back(MakePlane(bits, w, h, value));
  image->AdoptPlanes(std::move(planes));
  return image;
}

uint32_t Zero(uint32_t, uint32_t) { return 0; }
uint32_t Ramp(uint32_t x, uint32_t y) { return (x + 3 * y) % 256; }
uint32_t Big(uint32_t x, uint32_t) { return x * 1000; }

class CommandsTest : public ::testing::Test {
 protected:
  size_t Add(std::unique_ptr<IImageContainer> image, const std::string& name) {
    return app.RegisterImage(std::move(image), name, "P,Y,8", true);
  }
  uint32_t Sample(size_t index, uint32_t x, uint32_t y, uint32_t c = 0) {
    std::array<uint32_t, 3> v{};
    app.Images().At(index).image->GetSampleValues(x, y, v);
    return v[c];
  }
  // The failure as the user would see it; the command itself shows nothing.
  std::string Shown(const CommandOutcome& outcome) {
    EXPECT_TRUE(feedback.messages.empty()) << feedback.messages.front();
    ShowOutcome(app, outcome);
    if (feedback.messages.empty()) return "";
    std::string shown = feedback.messages.back();
    feedback.messages.clear();
    return shown;
  }
  bool HasStatus(const std::string& prefix) const {
    for (const std::string& s : feedback.statuses) {
      if (s.rfind(prefix, 0) == 0) return true;
    }
    return false;
  }

  test::RecordingFeedback feedback;
  AppState app{feedback};
};

TEST_F(CommandsTest, DiffPreconditionsInOrder) {
  CommandOutcome outcome = DiffComparison(app, 0);
  EXPECT_FALSE(outcome.done);
  EXPECT_EQ(Shown(outcome),
            "[Diff images error]: Diff error: Must be in compare mode with 2 open images of the same size and type");
  Add(Filled<CImageGray>(8, 4, 2, Zero), "/d/a.y");
  Add(Filled<CImageGray>(8, 4, 3, Zero), "/d/b.y");
  Add(Filled<CImageRgb>(8, 4, 2, Zero), "/d/c.rgb");
  Add(Filled<CImageGray>(16, 4, 2, Zero), "/d/d.y16");
  const std::pair<std::vector<size_t>, const char*> rows[] = {
      {{0, 1}, "Diff error: left and right images are of different size"},
      {{0, 2}, "Diff error: left and right images are of different base type"},
      {{0, 3}, "Diff error: left and right images are of different bits depth"},
  };
  for (const auto& [group, message] : rows) {
    app.ForceComparison(group);
    outcome = DiffComparison(app, 0);
    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(Shown(outcome), std::string("[Diff images error]: ") + message);
  }
  for (int i = 0; i < 16; ++i) Add(Filled<CImageGray>(8, 4, 2, Zero), "/d/x" + std::to_string(i));
  app.ForceComparison({0, 4});
  outcome = DiffComparison(app, 0);
  EXPECT_FALSE(outcome.done);
  EXPECT_EQ(Shown(outcome), "[Diff images error]: Too many open images, reached a max of 20");
  EXPECT_EQ(app.Images().Count(), 20u);
}

TEST_F(CommandsTest, DiffCreatesANamedGreyImageOfTheRegion) {
  Add(Filled<CImageGray>(16, 6, 4, Big), "/d/left.raw");
  Add(Filled<CImageGray>(16, 6, 4, Zero), "/e/right.raw");
  ASSERT_TRUE(app.Images().At(0).image->SetRegionOfInterest({1, 1, 3, 2}));
  app.ForceComparison({0, 1});
  ASSERT_TRUE(DiffComparison(app, CurrentDiffCode(app)).done);
  ASSERT_EQ(app.Images().Count(), 3u);
  const ImageRecord& diff = app.Images().At(2);
  EXPECT_EQ(diff.display_name, "Diff_left.raw <--> right.raw");
  EXPECT_EQ(diff.format_text, "P,Y,8");
  EXPECT_EQ(diff.image->FormatLabel(), "Y8");
  EXPECT_EQ(diff.image->GetRegionOfInterest(), (Rect{1, 1, 3, 2}));
  EXPECT_EQ(Sample(2, 1, 1), 255u);
  EXPECT_EQ(Sample(2, 0, 0), 0u) << "outside the region: left at zero";
  EXPECT_EQ(Sample(2, 4, 1), 0u);
  EXPECT_TRUE(app.IsCreatedUnsaved(diff.image.get()));
  EXPECT_TRUE(HasStatus("Diff: Created difference image Diff_left.raw <--> right.raw ("));
}

TEST_F(CommandsTest, DiffRunsOnThePoolFrom2001Pixels) {
  Add(Filled<CImageGray>(8, 40, 50, Ramp), "a");
  Add(Filled<CImageGray>(8, 40, 50, Zero), "b");
  app.ForceComparison({0, 1});
  ASSERT_TRUE(DiffComparison(app, 1).done);
  EXPECT_FALSE(HasStatus("Diff: Finished in ")) << "2000 pixels stay on the calling thread";
  Add(Filled<CImageGray>(8, 2001, 1, Ramp), "c");
  Add(Filled<CImageGray>(8, 2001, 1, Zero), "d");
  app.ForceComparison({3, 4});
  ASSERT_TRUE(DiffComparison(app, 1).done);
  EXPECT_TRUE(HasStatus("Diff: Finished in "));
  EXPECT_EQ(Sample(5, 2000, 0), Ramp(2000, 0));
  EXPECT_EQ(Sample(2, 39, 49), Ramp(39, 49));
}

TEST_F(CommandsTest, MaskedDiffAfterAFilter) {
  Add(Filled<CImageGray>(8, 8, 1, Ramp), "a");
  Add(Filled<CImageGray>(8, 8, 1, Zero), "b");
  ASSERT_TRUE(RunFilterCommand(app, {"0-3", "", false, FilterTarget::Image, 0}).outcome.done);
  ASSERT_TRUE(RunFilterCommand(app, {"*", "", false, FilterTarget::Image, 1}).outcome.done);
  app.ForceComparison({0, 1});
  ASSERT_TRUE(DiffComparison(app, 3).done);
  EXPECT_EQ(Sample(2, 3, 0), 3u);
  EXPECT_EQ(Sample(2, 5, 0), 0u) << "masked out: not written";
}

TEST_F(CommandsTest, FilterTargetsAndTheirTexts) {
  Add(Filled<CImageRgb>(8, 4, 4, Ramp), "/p/cam.rgb");
  ASSERT_TRUE(RunFilterCommand(app, {"*-5", "9", true, FilterTarget::Image, 0}).outcome.done);
  EXPECT_TRUE(HasStatus("Applying filter on image..."));
  EXPECT_TRUE(HasStatus("Applying filter to /p/cam.rgb"));
  EXPECT_TRUE(HasStatus("Filter: Applied in "));
  EXPECT_EQ(Sample(0, 3, 3), 9u);
  EXPECT_EQ(Sample(0, 1, 1), 4u);

  ASSERT_TRUE(RunFilterCommand(app, {"0;1-*;2", "", false, FilterTarget::SeparateComponents, 0}).outcome.done);
  ASSERT_EQ(app.Images().Count(), 4u);
  EXPECT_EQ(app.Images().At(1).display_name, "New_Copy_cam_R.rgb");
  EXPECT_EQ(app.Images().At(3).display_name, "New_Copy_cam_B.rgb");
  EXPECT_EQ(app.Images().At(2).format_text, "P,Y,8");
  EXPECT_EQ(Sample(2, 1, 0), 1u);  // G kept 1-*: the source's shown value was 1
  EXPECT_EQ(Sample(1, 1, 0), 0u);  // R kept only 0

  ASSERT_TRUE(RunFilterCommand(app, {"*", "", false, FilterTarget::NewImage, 0}).outcome.done);
  EXPECT_TRUE(HasStatus("Applying filter to a new image New_Copy_cam.rgb..."));
  EXPECT_EQ(app.Images().At(4).display_name, "New_Copy_cam.rgb");

  ClearFilterCommand(app, 0);
  EXPECT_EQ(feedback.statuses.back(), "Filter colors: clearing filter from...");
  EXPECT_EQ(Sample(0, 3, 3), Ramp(3, 3));
}

TEST_F(CommandsTest, FilterRefusals) {
  Add(Filled<CImageGray>(32, 2, 2, Zero), "deep");
  Add(Filled<CImageRgb>(8, 2, 2, Zero), "rgb");
  struct Row {
    FilterCommand command;
    FilterOutcome status;
    const char* shown;
  };
  const Row rows[] = {
      {{"*", "", false, FilterTarget::Image, 0}, FilterOutcome::BadDepth,
       "[Filter colors error]: Filter colors error: Can't filter 32bpp images"},
      {{"1;2", "", false, FilterTarget::Image, 1}, FilterOutcome::BadExpression,
       "[Colors parse error]: Please make sure you supply 1 or 3 comma separated components"},
      {{"*", "1,2", false, FilterTarget::Image, 1}, FilterOutcome::BadExpression,
       "[Negate color parse error]: Please make sure you supply 1 or 3 comma separated components"},
      {{"*", "", false, FilterTarget::SeparateComponents, 0}, FilterOutcome::BadDepth,
       "[Filter colors error]: Filter colors error: Can't filter 32bpp images"},
  };
  for (const Row& row : rows) {
    const FilterResult result = RunFilterCommand(app, row.command);
    EXPECT_EQ(result.status, row.status) << row.shown;
    EXPECT_FALSE(result.outcome.done);
    EXPECT_EQ(Shown(result.outcome), row.shown);
  }
  for (int i = 0; i < 17; ++i) Add(Filled<CImageGray>(8, 1, 1, Zero), "x" + std::to_string(i));
  FilterResult result = RunFilterCommand(app, {"*", "", false, FilterTarget::SeparateComponents, 1});
  EXPECT_EQ(result.status, FilterOutcome::NoSlots);
  EXPECT_EQ(Shown(result.outcome), "[Filter colors error]: Filter colors error: not enough free image slots");
  Add(Filled<CImageGray>(8, 1, 1, Zero), "full");
  result = RunFilterCommand(app, {"*", "", false, FilterTarget::NewImage, 1});
  EXPECT_EQ(result.status, FilterOutcome::NoSlots);
  EXPECT_EQ(Shown(result.outcome), "[Filter colors error]: Filter colors error: no free image slots");
  result = RunFilterCommand(app, {"*", "", false, FilterTarget::Image, 30});
  EXPECT_EQ(result.status, FilterOutcome::Failed);
  EXPECT_EQ(Shown(result.outcome), "") << "no image: nothing to tell";
  EXPECT_EQ(app.Images().Count(), 20u);
}

TEST_F(CommandsTest, ConvertReportsEachParseFailureUnderItsTitle) {
  Add(Filled<CImageGray>(8, 4, 4, Ramp), "/p/frame.y8");
  ConvertCommand command;
  command.target_text = "P,Q,8";
  CommandOutcome outcome = RunConvertCommand(app, command);
  EXPECT_FALSE(outcome.done);
  EXPECT_EQ(outcome.text, "Illegal format 'P,Q,8'") << "the batch line quotes the text alone";
  EXPECT_EQ(Shown(outcome), "[Image format string parse error]: Illegal format 'P,Q,8'");
  command.target_text = "I,RGB,8";
  command.resize = true;
  command.size_text = "w*2";
  EXPECT_EQ(Shown(RunConvertCommand(app, command)),
            "[Parse image size error]: No new size is entered or semi-colon(;) separator not found");
  command.size_text = "w*2;h";
  command.offset_text = "9,0";
  EXPECT_EQ(Shown(RunConvertCommand(app, command)).rfind("[Parse base offset error]: The new size 8x4 is larger", 0),
            0u);
  command.offset_text = "";
  outcome = RunConvertCommand(app, command);
  ASSERT_TRUE(outcome.done) << outcome.text;
  EXPECT_TRUE(feedback.messages.empty());
  EXPECT_EQ(app.Images().At(1).display_name, "Converted_Copy_frame.y8");
  EXPECT_EQ(app.Images().At(1).format_text, "I,RGB,8");
  EXPECT_TRUE(HasStatus("Converting a new image from /p/frame.y8..."));
  EXPECT_TRUE(HasStatus("Converted new image ("));
  EXPECT_TRUE(app.IsCreatedUnsaved(app.Images().At(1).image.get()));
}

}  // namespace
}  // namespace korvanel
