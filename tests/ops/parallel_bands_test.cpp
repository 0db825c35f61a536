#include <gtest/gtest.h>

#include <cstring>
#include <optional>
#include <thread>
#include <vector>

#include "image/display_conversion.h"
#include "image/format_parser.h"
#include "image/image_factory.h"
#include "ops/convert_operation.h"
#include "ops/job_runner.h"
#include "ops/worker_pool.h"

namespace korvanel {
namespace {

// Counts the band runs it is asked for, then hands them to the job runner
// it wraps.
class CountingRunner : public IParallelRunner {
 public:
  explicit CountingRunner(JobRunner& runner) : runner_(runner) {}
  uint32_t BandCount() const override { return runner_.BandCount(); }
  BandRun RunBands(const Rect& region, IProgressSink* progress, const BandKernel& kernel) override {
    ++calls;
    return runner_.RunBands(region, progress, kernel);
  }
  int calls = 0;

 private:
  JobRunner& runner_;
};

FormatExpression Format(const char* expression) {
  CNullLineSink log;
  std::optional<FormatExpression> format = ParseFormatExpression(expression, 0, log);
  EXPECT_TRUE(format) << expression;
  return format.value_or(FormatExpression{});
}

// A frame's bytes of the format, varied enough that neighbouring samples
// differ in every byte.
std::vector<uint8_t> FrameBytes(const FormatExpression& format, uint32_t width, uint32_t height) {
  CNullLineSink log;
  const auto empty = LoadWithFormat(format, nullptr, 0, width, height, log);
  std::vector<uint8_t> bytes(empty ? empty->GetRawByteSize() : 0);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 131 + i / 977);
  return bytes;
}

std::unique_ptr<CImageConcreteBase> Load(const FormatExpression& format, std::vector<uint8_t> bytes,
                                         uint32_t width, uint32_t height, IParallelRunner* runner) {
  CNullLineSink log;  // big-endian loads swap their input: `bytes` is a copy
  return LoadWithFormat(format, bytes.data(), bytes.size(), width, height, log, runner);
}

void ExpectSamePlanes(const CImageConcreteBase& a, const CImageConcreteBase& b, const std::string& what) {
  ASSERT_EQ(a.PlaneCount(), b.PlaneCount()) << what;
  for (uint32_t p = 0; p < a.PlaneCount(); ++p) {
    ASSERT_EQ(a.GetPlane(p).byte_size(), b.GetPlane(p).byte_size()) << what;
    EXPECT_EQ(0, std::memcmp(a.GetPlane(p).bytes(), b.GetPlane(p).bytes(), a.GetPlane(p).byte_size()))
        << what << " plane " << p;
  }
}

struct FrameCase {
  const char* expression;
  uint32_t width;
  uint32_t height;
};

// Interleaved files unpacked in bands on three workers give the planes the
// sequential unpack gives, for odd widths and every depth.
TEST(ParallelUnpackTest, BandsOnThePoolMatchTheSequentialUnpack) {
  const FrameCase cases[] = {
      {"I,YUYV,8", 1030, 400},   {"I,UYVY,-16", 1030, 400}, {"I,BGR,8", 1031, 401},
      {"I,RGB,16", 777, 333},    {"I,YYYYUV,8", 2048, 401},
  };
  WorkerPool pool(3);
  JobRunner jobs(&pool);
  for (const FrameCase& c : cases) {
    const FormatExpression format = Format(c.expression);
    const std::vector<uint8_t> bytes = FrameBytes(format, c.width, c.height);
    CountingRunner runner(jobs);
    auto parallel = Load(format, bytes, c.width, c.height, &runner);
    auto sequential = Load(format, bytes, c.width, c.height, nullptr);
    ASSERT_TRUE(parallel && sequential) << c.expression;
    EXPECT_EQ(runner.calls, 1) << c.expression;
    ExpectSamePlanes(*parallel, *sequential, c.expression);
  }
}

TEST(ParallelUnpackTest, SmallImagesStayOnTheCallingThread) {
  WorkerPool pool(3);
  JobRunner jobs(&pool);
  CountingRunner runner(jobs);
  const FormatExpression format = Format("I,YUYV,8");
  EXPECT_TRUE(Load(format, FrameBytes(format, 64, 48), 64, 48, &runner));
  EXPECT_EQ(runner.calls, 0);
  EXPECT_EQ(pool.StartedThreads(), 0u);
}

// The rendition built in bands equals the one built on one thread, byte for
// byte, for every image class and depth, with sizes that do not divide into
// the bands evenly.
TEST(ParallelRenditionTest, BandBuiltRenditionsEqualTheSingleThreadOnes) {
  const FrameCase cases[] = {
      {"P,Y,8", 301, 257},      {"P,Y,16", 299, 263},       {"P,Y,-32", 257, 301},
      {"I,RGB,8", 311, 251},    {"P,R,G,B,16", 263, 255},   {"I,YUYV,8", 302, 259},
      {"PI,YYYYUV,8", 306, 258}, {"P,Y,U,V,16", 281, 263},  {"I,UYVY,-16", 290, 271},
  };
  WorkerPool pool(3);
  JobRunner jobs(&pool);
  for (const FrameCase& c : cases) {
    const FormatExpression format = Format(c.expression);
    const std::vector<uint8_t> bytes = FrameBytes(format, c.width, c.height);
    auto banded = Load(format, bytes, c.width, c.height, nullptr);
    auto single = Load(format, bytes, c.width, c.height, nullptr);
    ASSERT_TRUE(banded && single) << c.expression;
    CountingRunner runner(jobs);
    const DisplayRendition* a = banded->BuildDisplay(&runner);
    const DisplayRendition* b = single->BuildDisplay();
    ASSERT_TRUE(a && b) << c.expression;
    EXPECT_EQ(runner.calls, 1) << c.expression;
    ASSERT_EQ(a->width, c.width);
    ASSERT_EQ(a->height, c.height);
    EXPECT_TRUE(a->pixels == b->pixels) << c.expression;
  }
}

// The viewer loads a file while an operation runs: both share the one pool.
// Each thread's results must equal what it gets alone.
TEST(JobRunnerSharedTest, TwoThreadsUsingThePoolAtOnceBothGetCorrectResults) {
  const FormatExpression yuyv = Format("I,YUYV,8");
  const std::vector<uint8_t> yuyv_bytes = FrameBytes(yuyv, 1030, 400);
  const FormatExpression nv12 = Format("PI,YYYYUV,8");
  const auto source = Load(nv12, FrameBytes(nv12, 640, 480), 640, 480, nullptr);
  ASSERT_TRUE(source);
  ConvertRequest request;
  request.target = Format("I,RGB,8");
  request.yuv_to_rgb = kDefaultYuvToRgb;
  request.rgb_to_yuv = kDefaultRgbToYuv;

  JobRunner alone(nullptr);
  const auto loaded_alone = Load(yuyv, yuyv_bytes, 1030, 400, nullptr);
  const ConvertRun converted_alone = RunConvert(*source, request, alone, nullptr);
  ASSERT_TRUE(loaded_alone && converted_alone.image);

  WorkerPool pool(2);
  JobRunner shared(&pool);
  constexpr int kRounds = 12;
  std::thread loader([&] {
    for (int i = 0; i < kRounds; ++i) {
      const auto loaded = Load(yuyv, yuyv_bytes, 1030, 400, &shared);
      ASSERT_TRUE(loaded);
      ExpectSamePlanes(*loaded, *loaded_alone, "load, round " + std::to_string(i));
      const auto rendition = loaded->BuildDisplay(&shared);
      ASSERT_TRUE(rendition);
      EXPECT_TRUE(rendition->pixels == loaded_alone->BuildDisplay()->pixels) << "round " << i;
    }
  });
  for (int i = 0; i < kRounds; ++i) {
    const ConvertRun converted = RunConvert(*source, request, shared, nullptr);
    ASSERT_TRUE(converted.image);
    EXPECT_TRUE(converted.run.ok);
    ExpectSamePlanes(*converted.image, *converted_alone.image, "convert, round " + std::to_string(i));
  }
  loader.join();
}

}  // namespace
}  // namespace korvanel
