#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "expr/image_evaluator.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "support/image_builders.h"

namespace korvanel {
namespace {

using test::MakeImage;

constexpr auto Gray = test::MakeGrayImage;
constexpr auto Samples = test::PlaneSamples;

struct StageResult {
  bool ok = false;
  uint32_t channels = 0;
  std::vector<Plane> planes;
  std::vector<std::string> errors;
};

// Prepares `stage` over `images` and evaluates every pixel, by blocks or,
// with `per_pixel`, one pixel at a time with the per-pixel walk.
StageResult RunStage(std::string_view stage, std::vector<const CImageConcreteBase*> images,
                     IEvalOptions options = {}, bool per_pixel = false) {
  StageResult out;
  const IEvalInputs inputs = MakeIEvalInputs(images);
  CImageEvaluator eval;
  if (!eval.InitPhrase(stage, inputs, options)) {
    out.errors = eval.Errors();
    return out;
  }
  out.channels = eval.OutputChannels();
  std::vector<Plane*> pointers;
  out.planes.resize(out.channels);
  for (Plane& plane : out.planes) {
    plane.Allocate(eval.OutputBits(), inputs.width, inputs.height, true);
    pointers.push_back(&plane);
  }
  if (per_pixel) {
    out.ok = true;
    for (uint32_t y = 0; y < inputs.height && out.ok; ++y) {
      for (uint32_t x = 0; x < inputs.width && out.ok; ++x) {
        std::array<uint32_t, 3> values{};
        out.ok = eval.EvaluatePixel(x, y, values);
        for (uint32_t ch = 0; out.ok && ch < out.channels; ++ch) {
          DispatchBits(eval.OutputBits(), [&]<typename T>(std::type_identity<T>) {
            out.planes[ch].Row<T>(y)[x] = static_cast<T>(values[ch]);
          });
        }
      }
    }
  } else {
    out.ok = eval.EvaluateBand(Rect{0, 0, inputs.width - 1, inputs.height - 1}, pointers.data(),
                               out.channels, nullptr);
  }
  out.errors = eval.Errors();
  return out;
}

std::string Joined(const std::vector<std::string>& lines) {
  std::string out;
  for (const std::string& line : lines) out += line + "\n";
  return out;
}

// --- the listed cases ---------------------------------------------------------

// Images: 1 is 10 x, 2 is 40 + x, both 5 x 1.
TEST(ImageEvaluatorTest, StagesReadImagesComponentsAndIndices) {
  auto first = Gray(8, 5, 1, [](uint32_t x, uint32_t) { return x * 10; });
  auto second = Gray(8, 5, 1, [](uint32_t x, uint32_t) { return 40 + x; });
  struct Case {
    const char* stage;
    std::vector<std::vector<uint32_t>> planes;
  };
  const Case cases[] = {
      {"c;c;c", {{0, 10, 20, 30, 40}, {0, 10, 20, 30, 40}, {0, 10, 20, 30, 40}}},
      {" (x % 2)*i ", {{0, 10, 0, 30, 0}}},
      // A missing component of a one-component image reads its only one.
      {"i2c2", {{40, 41, 42, 43, 44}}},
      // Image 1 read at the column worked out from image 2 (4 - x): indices nest.
      {"i1[i2[x,y]-36-x*2,y]", {{40, 30, 20, 10, 0}}},
  };
  for (const Case& c : cases) {
    const StageResult r = RunStage(c.stage, {first.get(), second.get()});
    ASSERT_TRUE(r.ok) << c.stage << ": " << Joined(r.errors);
    ASSERT_EQ(r.planes.size(), c.planes.size()) << c.stage;
    for (size_t ch = 0; ch < c.planes.size(); ++ch) EXPECT_EQ(Samples(r.planes[ch]), c.planes[ch]) << c.stage;
  }
}

TEST(ImageEvaluatorTest, IndexLeftOfTheImageGivesTheOutOfRangeValue) {
  auto grey = Gray(8, 30, 2, [](uint32_t x, uint32_t y) { return x + y * 50; });
  IEvalOptions options;
  options.out_of_range = {7, 7, 7};
  const StageResult r = RunStage("i[x-20,y]", {grey.get()}, options);
  ASSERT_TRUE(r.ok) << Joined(r.errors);
  for (uint32_t y = 0; y < 2; ++y) {
    for (uint32_t x = 0; x < 30; ++x) {
      EXPECT_EQ(r.planes[0].SampleAt(x, y), x < 20 ? 7u : x - 20 + y * 50) << x << "," << y;
    }
  }
}

TEST(ImageEvaluatorTest, BorderReadsUseTheOutOfRangeValueOfTheTokensComponent) {
  auto rgb = MakeImage<CImageRgb>(16, 3, 3);  // component c at (x,y): c*1000 + y*100 + x
  IEvalOptions options;
  options.out_of_range = {11, 22, 33};
  const StageResult r = RunStage("i[x+1,y];i[x,y-1];i[x+1.9,y+1]", {rgb.get()}, options);
  ASSERT_TRUE(r.ok) << Joined(r.errors);
  ASSERT_EQ(r.channels, 3u);
  // Right border, top border, and a fractional index truncated toward zero.
  EXPECT_EQ(Samples(r.planes[0]), (std::vector<uint32_t>{1, 2, 11, 101, 102, 11, 201, 202, 11}));
  EXPECT_EQ(Samples(r.planes[1]),
            (std::vector<uint32_t>{22, 22, 22, 1000, 1001, 1002, 1100, 1101, 1102}));
  EXPECT_EQ(Samples(r.planes[2]),
            (std::vector<uint32_t>{2101, 2102, 33, 2201, 2202, 33, 33, 33, 33}));
}

TEST(ImageEvaluatorTest, RegionVariablesDescribeTheActiveRegion) {
  auto grey = Gray(8, 6, 5, [](uint32_t, uint32_t) { return 0; });
  grey->SetRegionOfInterest(Rect{1, 2, 4, 3});
  const StageResult r = RunStage("x1*10+y1;x2*10+y2;cw*10+ch+w+h", {grey.get()},
                                 IEvalOptions{{0, 0, 0}, IEvalChannelMode::Three, false, 0, false});
  ASSERT_TRUE(r.ok) << Joined(r.errors);
  EXPECT_EQ(r.planes[0].SampleAt(0, 0), 12u);
  EXPECT_EQ(r.planes[1].SampleAt(5, 4), 43u);
  EXPECT_EQ(r.planes[2].SampleAt(3, 3), 42u + 6 + 5);
}

TEST(ImageEvaluatorTest, ResultsAreTruncatedAndClampedToTheOutputDepth) {
  auto grey = Gray(8, 6, 1, [](uint32_t x, uint32_t) { return x; });
  struct Case {
    const char* stage;
    uint32_t bits;
    std::vector<uint32_t> expected;
  };
  const Case cases[] = {
      {"x*100-200", 8, {0, 0, 0, 100, 200, 255}},
      {"x/2.0 + 0.9", 8, {0, 1, 1, 2, 2, 3}},
      {"-x*1.5", 8, {0, 0, 0, 0, 0, 0}},
      {"x*20000", 16, {0, 20000, 40000, 60000, 65535, 65535}},
      {"x*1e300*1e300-1", 32, {0, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu, 0xFFFFFFFFu}},
  };
  for (const Case& c : cases) {
    IEvalOptions options;
    options.out_bits = c.bits;
    const StageResult r = RunStage(c.stage, {grey.get()}, options);
    ASSERT_TRUE(r.ok) << c.stage << ": " << Joined(r.errors);
    EXPECT_EQ(r.planes[0].bits(), c.bits);
    EXPECT_EQ(Samples(r.planes[0]), c.expected) << c.stage;
  }
}

// --- preparation messages ------------------------------------------------------

TEST(ImageEvaluatorTest, PreparationFailuresSayWhatAndWhere) {
  auto grey = Gray(8, 4, 4, [](uint32_t, uint32_t) { return 1; });
  auto rgb = MakeImage<CImageRgb>(8, 4, 4);
  struct Case {
    const char* stage;
    IEvalChannelMode channels;
    const char* errors;
  };
  const Case cases[] = {
      {"i;i", IEvalChannelMode::Context, "Phrase must have either 1 or 3 components\n"},
      {"i;i;i", IEvalChannelMode::Single, "Can't force single output on 3 components expression\n"},
      {"1 + i[x y]", IEvalChannelMode::Context, "No XY separator for expr. starting at pos 4\n"},
      {"x] + 1", IEvalChannelMode::Context, "Unbalanced barracks for expr. starting at pos 1\n"},
      {"i3c1 + 1", IEvalChannelMode::Context, "Illegal image component token i3c1 at pos 0\n"},
      {"x + foo[1,2]", IEvalChannelMode::Context, "Illegal image component token foo at pos 4\n"},
      {"1;2;x +* 3", IEvalChannelMode::Context,
       "Can't parse x +* 3 at pos 4\nIllegal operator: Illegal operand '+*'\n"},
      {"i7", IEvalChannelMode::Context, "Can't parse i7 at pos 0\nUnknown variable: i7\n"},
      // Region variables exist only while a region is set.
      {"x1", IEvalChannelMode::Context, "Can't parse x1 at pos 0\nUnknown variable: x1\n"},
      {"x + i[x,]", IEvalChannelMode::Context, "Can't parse  at pos 8\nMath error: Empty token\n"},
  };
  for (const Case& c : cases) {
    IEvalOptions options;
    options.channels = c.channels;
    const StageResult r = RunStage(c.stage, {grey.get(), rgb.get()}, options);
    EXPECT_FALSE(r.ok) << c.stage;
    EXPECT_EQ(Joined(r.errors), c.errors) << c.stage;
  }
}

TEST(ImageEvaluatorTest, TheHundredthSlotIsRefused) {
  auto grey = Gray(8, 2, 2, [](uint32_t, uint32_t) { return 1; });
  std::string ninety_nine;
  for (int k = 0; k < 99; ++k) ninety_nine += (k ? "+" : "") + std::string("i[x+") + std::to_string(k) + ",y]";
  const StageResult fits = RunStage(ninety_nine, {grey.get()});
  EXPECT_TRUE(fits.ok) << Joined(fits.errors);
  const StageResult over = RunStage(ninety_nine + "+i[x+99,y]", {grey.get()});
  EXPECT_FALSE(over.ok);
  EXPECT_EQ(Joined(over.errors),
            "Reached max supported variables of 99. Please reduce expression complexity.\n");
}

TEST(ImageEvaluatorTest, RepeatedTokensShareOneSlot) {
  auto grey = Gray(8, 2, 2, [](uint32_t, uint32_t) { return 1; });
  const IEvalInputs inputs = MakeIEvalInputs({grey.get()});
  CImageEvaluator eval;
  ASSERT_TRUE(eval.InitPhrase("i + i1 + c1 + i1c1 + i[x, y] + i1c1[x,y]", inputs, {}));
  EXPECT_EQ(eval.SlotCount(), 2u);
}

TEST(ImageEvaluatorTest, EvaluationNeedsPreparationAndMatchingOutputs) {
  CImageEvaluator eval;
  std::array<uint32_t, 3> values{};
  EXPECT_FALSE(eval.EvaluatePixel(0, 0, values));
  EXPECT_EQ(Joined(eval.Errors()), "Must call InitPhrase() before evaluation phase.\n");

  auto grey = Gray(8, 4, 4, [](uint32_t, uint32_t) { return 1; });
  const IEvalInputs inputs = MakeIEvalInputs({grey.get()});
  Plane small;
  small.Allocate(8, 3, 4);
  Plane* outputs[] = {&small, &small, &small};
  ASSERT_TRUE(eval.InitPhrase("i", inputs, {}));
  EXPECT_FALSE(eval.EvaluateBand(Rect{0, 0, 3, 3}, outputs, 1, nullptr));
  EXPECT_EQ(Joined(eval.Errors()), "User single-comp output doesn't match expected size\n");
  ASSERT_TRUE(eval.InitPhrase("1;2;3", inputs, {}));
  EXPECT_FALSE(eval.EvaluateBand(Rect{0, 0, 3, 3}, outputs, 3, nullptr));
  EXPECT_EQ(Joined(eval.Errors()), "User 3-comp output doesn't match expected size\n");
}

// --- run-time errors -------------------------------------------------------------

TEST(ImageEvaluatorTest, RunTimeErrorsNameThePixelAndTheChannel) {
  auto grey = Gray(8, 300, 3, [](uint32_t x, uint32_t y) { return (x + y) % 256; });
  struct Case {
    const char* stage;
    const char* errors;
  };
  const Case cases[] = {
      {"100/(x-3)", "Eval single channel output run-time error at (3,0)\n"
                    "Divide by zero: right of 100 is zero\n"},
      {"1;2;i/(x-260+y)", "Eval 3 channel output (ch. 3) run-time error at (260,0)\n"
                          "Divide by zero: right of 4 is zero\n"},
      {"1;sqrt(2-x*y);3", "Eval 3 channel output (ch. 2) run-time error at (3,1)\n"},
      {"i[1/(y-1),x]", "Eval single channel output run-time error at (0,1)\n"
                       "Divide by zero: right of 1 is zero\n"},
  };
  for (bool per_pixel : {false, true}) {
    for (const Case& c : cases) {
      const StageResult r = RunStage(c.stage, {grey.get()}, {}, per_pixel);
      EXPECT_FALSE(r.ok) << c.stage;
      ASSERT_FALSE(r.errors.empty()) << c.stage;
      EXPECT_TRUE(Joined(r.errors).starts_with(c.errors))
          << c.stage << (per_pixel ? " per pixel" : " by blocks") << ":\n" << Joined(r.errors);
    }
  }
}

// --- blocks and the per-pixel walk agree --------------------------------------------

TEST(ImageEvaluatorTest, BlocksGiveThePerPixelResults) {
  auto first = Gray(16, 600, 4, [](uint32_t x, uint32_t y) { return (x * 37 + y * 101) % 4096; });
  auto second = MakeImage<CImageRgb>(16, 600, 4);
  first->SetRegionOfInterest(Rect{10, 1, 500, 2});
  const char* stages[] = {
      "(i1+i2)/2",
      "i*2+10",
      "(i[x-1,y]+i[x+1,y]+i[x,y-1]+i[x,y+1])/4",
      "sqrt(i1*1.0)*8; i2c3 % 255 + x1; (x>y)*i2[w-1-x, h-1-y]",
      "i[i2c1[x,y] % w, (y+1)%h] ^| 0xFF",
      "(x < cw) * 7 + (y >= y1)",
      "round(i/3.0) + min(i2c2, i1)*(y==2)",
  };
  for (const char* stage : stages) {
    const StageResult blocks = RunStage(stage, {first.get(), second.get()});
    const StageResult pixels = RunStage(stage, {first.get(), second.get()}, {}, true);
    ASSERT_TRUE(blocks.ok) << stage << ": " << Joined(blocks.errors);
    ASSERT_TRUE(pixels.ok) << stage << ": " << Joined(pixels.errors);
    ASSERT_EQ(blocks.planes.size(), pixels.planes.size()) << stage;
    for (size_t ch = 0; ch < blocks.planes.size(); ++ch) {
      EXPECT_EQ(Samples(blocks.planes[ch]), Samples(pixels.planes[ch])) << stage << " ch " << ch;
    }
  }
}

}  // namespace
}  // namespace korvanel
