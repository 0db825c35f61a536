#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"
#include "ops/ieval_operation.h"
#include "ops/image_eval_processor.h"
#include "support/image_builders.h"

namespace korvanel {
namespace {

using test::MakeImage;

constexpr auto Gray = test::MakeGrayImage;

std::vector<uint32_t> Samples(const CImageConcreteBase& image, uint32_t component = 0) {
  return test::PlaneSamples(image.GetPlane(component));
}

std::string Messages(const IEvalResult& result) {
  std::string out;
  for (const IEvalMessage& m : result.messages) out += "[" + m.title + "]: " + m.text + "\n";
  return out;
}

IEvalRequest Request(std::string expression, std::string override_list = "") {
  IEvalRequest request;
  request.expression = std::move(expression);
  request.output_override = std::move(override_list);
  return request;
}

TEST(ImageEvalOperationTest, ResultsAreIdenticalOnOneAndManyWorkers) {
  auto first = Gray(8, 97, 61, [](uint32_t x, uint32_t y) { return (x * 13 + y * 7) % 256; });
  auto second = Gray(8, 97, 61, [](uint32_t x, uint32_t y) { return (x ^ y) % 256; });
  const char* expressions[] = {
      "{(i1+i2)/2}",
      "{i*2+10}",
      "{(i[x-1,y]+i[x+1,y]+i[x,y-1]+i[x,y+1])/4}",
      "{i1*0.75 + i2[w-1-x,y]*0.25} {i1 - i2 + 128}",
  };
  WorkerPool pool(3);
  JobRunner parallel(&pool);
  JobRunner sequential(nullptr);
  for (const char* expression : expressions) {
    const IEvalResult one = RunImageEval(Request(expression), {first.get(), second.get()}, sequential);
    const IEvalResult many = RunImageEval(Request(expression), {first.get(), second.get()}, parallel);
    ASSERT_TRUE(one.ok) << expression << "\n" << Messages(one);
    ASSERT_TRUE(many.ok) << expression << "\n" << Messages(many);
    ASSERT_EQ(one.outputs.size(), many.outputs.size());
    for (size_t k = 0; k < one.outputs.size(); ++k) {
      EXPECT_EQ(Samples(*one.outputs[k].image), Samples(*many.outputs[k].image)) << expression;
    }
  }
}

TEST(ImageEvalOperationTest, StagesReadTheImagesAsThePreviousStageLeftThem) {
  auto first = Gray(8, 4, 2, [](uint32_t x, uint32_t) { return x; });
  auto second = Gray(8, 4, 2, [](uint32_t, uint32_t y) { return 10 + y; });
  JobRunner runner(nullptr);
  struct Case {
    const char* expression;
    const char* override_list;
    std::vector<uint32_t> replaces;
    std::vector<uint32_t> last;
  };
  const Case cases[] = {
      // New images: the second stage still reads the original image 1.
      {"{i+1} {i*2}", "", {0, 0}, {0, 2, 4, 6, 0, 2, 4, 6}},
      // Replacing image 1: the second stage reads the first one's result.
      {"{i+1} {i*2}", "1", {1, 1}, {2, 4, 6, 8, 2, 4, 6, 8}},
      // "2,1": image 2 becomes i1+i2, then image 1 becomes i2 (the new one) * 2.
      {"{i1+i2} {i2*2}", "2,1", {2, 1}, {20, 22, 24, 26, 22, 24, 26, 28}},
      // A shorter list repeats its last entry.
      {"{i+1} {i+1} {i+1}", "0,1", {0, 1, 1}, {2, 3, 4, 5, 2, 3, 4, 5}},
  };
  for (const Case& c : cases) {
    const IEvalResult result =
        RunImageEval(Request(c.expression, c.override_list), {first.get(), second.get()}, runner);
    ASSERT_TRUE(result.ok) << c.expression << "\n" << Messages(result);
    ASSERT_EQ(result.outputs.size(), c.replaces.size()) << c.expression;
    for (size_t s = 0; s < c.replaces.size(); ++s) {
      EXPECT_EQ(result.outputs[s].replaces, c.replaces[s]) << c.expression << " stage " << s;
    }
    EXPECT_EQ(Samples(*result.outputs.back().image), c.last) << c.expression;
    EXPECT_TRUE(result.status.starts_with("I-Eval: Finished in ")) << result.status;
    EXPECT_TRUE(result.status.ends_with(" ms")) << result.status;
  }
  // The registry's images are never touched by the run itself.
  EXPECT_EQ(Samples(*first), (std::vector<uint32_t>{0, 1, 2, 3, 0, 1, 2, 3}));
}

TEST(ImageEvalOperationTest, OutputsCarryTheirFormatAndKind) {
  auto grey = Gray(8, 2, 2, [](uint32_t, uint32_t) { return 5; });
  auto rgb = MakeImage<CImageRgb>(16, 2, 2);
  JobRunner runner(nullptr);
  struct Case {
    const CImageConcreteBase* image;
    const char* expression;
    IEvalChannelMode channels;
    bool yuv;
    uint32_t bits;
    const char* format;
    const char* type;
  };
  const Case cases[] = {
      {grey.get(), "i", IEvalChannelMode::Context, false, 0, "P,Y,8", "GRAY"},
      {rgb.get(), "i", IEvalChannelMode::Context, false, 0, "P,R,G,B,16", "RGB"},
      {rgb.get(), "i", IEvalChannelMode::Single, false, 8, "P,Y,8", "GRAY"},
      {grey.get(), "i", IEvalChannelMode::Three, true, 32, "P,Y,U,V,32", "YUV"},
  };
  for (const Case& c : cases) {
    IEvalRequest request = Request(c.expression);
    request.options.channels = c.channels;
    request.options.yuv = c.yuv;
    request.options.out_bits = c.bits;
    const IEvalResult result = RunImageEval(request, {c.image}, runner);
    ASSERT_TRUE(result.ok) << Messages(result);
    EXPECT_EQ(result.outputs[0].format_text, c.format);
    EXPECT_STREQ(result.outputs[0].image->TypeName(), c.type);
  }
}

TEST(ImageEvalOperationTest, ASingleChannelReplacingThreeComponentsIsRepeated) {
  auto rgb = MakeImage<CImageRgb>(8, 3, 2);
  JobRunner runner(nullptr);
  IEvalRequest request = Request("{c2}", "1");
  request.options.channels = IEvalChannelMode::Single;
  const IEvalResult result = RunImageEval(request, {rgb.get()}, runner);
  ASSERT_TRUE(result.ok) << Messages(result);
  const CImageConcreteBase& out = *result.outputs[0].image;
  EXPECT_STREQ(out.TypeName(), "RGB");
  EXPECT_EQ(result.outputs[0].format_text, "P,R,G,B,8");
  for (uint32_t c = 0; c < 3; ++c) EXPECT_EQ(Samples(out, c), Samples(*rgb, 1)) << c;
}

TEST(ImageEvalOperationTest, OnlyTheRegionIsEvaluatedAndTheRestIsImageOne) {
  auto grey = Gray(8, 5, 4, [](uint32_t x, uint32_t y) { return x + 10 * y; });
  JobRunner runner(nullptr);
  IEvalRequest request = Request("{200}");
  request.options.in_roi = true;
  const IEvalResult refused = RunImageEval(request, {grey.get()}, runner);
  EXPECT_FALSE(refused.ok);
  EXPECT_EQ(Messages(refused), "[Image Evaluator]: I-Eval error: ROI isn't active\n");

  grey->SetRegionOfInterest(Rect{1, 1, 2, 2});
  const IEvalResult result = RunImageEval(request, {grey.get()}, runner);
  ASSERT_TRUE(result.ok) << Messages(result);
  EXPECT_EQ(Samples(*result.outputs[0].image),
            (std::vector<uint32_t>{0, 1, 2, 3, 4, 10, 200, 200, 13, 14, 20, 200, 200, 23, 24,
                                   30, 31, 32, 33, 34}));
}

// Mistakes in the request or any stage stop the run before it starts.
TEST(ImageEvalOperationTest, RequestMistakesAreSingleMessages) {
  auto grey = Gray(8, 2, 2, [](uint32_t, uint32_t) { return 5; });
  auto rgb = MakeImage<CImageRgb>(8, 2, 2);
  auto wider = Gray(8, 3, 2, [](uint32_t, uint32_t) { return 5; });
  JobRunner runner(nullptr);
  struct Case {
    IEvalRequest request;
    std::string messages;
    std::vector<const CImageConcreteBase*> images;
  };
  IEvalRequest two_values = Request("i");
  two_values.out_of_range = "1;2";
  IEvalRequest too_big = Request("i");
  too_big.out_of_range = "1;300;2";
  IEvalRequest not_number = Request("i");
  not_number.out_of_range = "abc";
  const std::string error = "[Image Evaluator]: I-Eval error: ";
  const std::vector<const CImageConcreteBase*> both = {grey.get(), rgb.get()};
  const Case cases[] = {
      {two_values, error + "Must enter 1 or 3 components\n", both},
      {too_big, error + "'300' for comp 2 isn't valid number or bpp out-of-range\n", both},
      {not_number, error + "'abc' for comp 1 isn't valid number or bpp out-of-range\n", both},
      {Request("{i", ""), error + "Missing '}' for the stage starting at pos 0\n", both},
      {Request("i", "3"), error + "Illegal output override list '3'\n", both},
      {Request("{i;i;i}", "1"),
       "[I-Eval error]: Error(s) in I-Eval #1:\n"
       "Can't replace image 1 of a single component by a 3 channel output\n",
       both},
      {Request("{i1+i2}"), error + "The images must be non-empty and of one size\n",
       {grey.get(), wider.get()}},
      {Request("{i+1} {i[x y]} {foo}"),
       "[I-Eval error]: Error(s) in I-Eval #2:\nNo XY separator for expr. starting at pos 0\n"
       "Error(s) in I-Eval #3:\nCan't parse foo at pos 0\nUnknown variable: foo\n",
       {grey.get()}},
  };
  for (const Case& c : cases) {
    const IEvalResult result = RunImageEval(c.request, c.images, runner);
    EXPECT_FALSE(result.ok);
    EXPECT_FALSE(result.aborted);
    EXPECT_TRUE(result.outputs.empty());
    EXPECT_EQ(Messages(result), c.messages);
  }
}

TEST(ImageEvalOperationTest, ARunTimeErrorAbortsWithItsPixel) {
  auto grey = Gray(8, 40, 30, [](uint32_t, uint32_t) { return 5; });
  WorkerPool pool(2);
  JobRunner runner(&pool);
  const IEvalResult result =
      RunImageEval(Request("{i+1} {i/(y-20)}", "1"), {grey.get()}, runner);
  EXPECT_FALSE(result.ok);
  EXPECT_TRUE(result.aborted);
  ASSERT_EQ(result.outputs.size(), 1u);  // the first stage finished
  EXPECT_EQ(Messages(result),
            "[I-Eval run-time error]: Error(s) in I-Eval #2:\n"
            "Eval single channel output run-time error at (0,20)\n"
            "Divide by zero: right of 6 is zero\n");
  EXPECT_TRUE(result.status.starts_with("I-Eval: Aborted after ")) << result.status;
}

TEST(ImageEvalOperationTest, AJobStopsAfterTheRowInWhichItSeesACancel) {
  auto grey = Gray(8, 7, 5, [](uint32_t, uint32_t) { return 5; });
  IEvalShared shared;
  shared.stages = {{"i+1", 0}};
  shared.inputs = MakeIEvalInputs({grey.get()});
  shared.outputs.resize(1);
  shared.outputs[0].Allocate(8, 7, 5, true);
  CImageEvalProcessor job(shared);
  job.SetRegion(Rect{0, 1, 6, 4});
  CancelFlag cancel{1};
  job.SetCancelFlag(&cancel);
  EXPECT_FALSE(job.Run());
  EXPECT_TRUE(job.Errors().empty());
  EXPECT_EQ(job.GetProgress(), 7u);
  EXPECT_EQ(shared.outputs[0].SampleAt(3, 1), 6u);
  EXPECT_EQ(shared.outputs[0].SampleAt(3, 2), 0u);
}

}  // namespace
}  // namespace korvanel
