#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "image/format_parser.h"
#include "image/image_factory.h"
#include "ops/worker_pool.h"

namespace korvanel {
namespace {

// Records how many bands each RunBands call asked for, then runs them on
// the pool it wraps.
class CountingRunner : public IParallelRunner {
 public:
  explicit CountingRunner(WorkerPool& pool) : pool_(pool) {}
  uint32_t BandCount() const override { return pool_.BandCount(); }
  void RunBands(uint32_t count, const std::function<void(uint32_t)>& work) override {
    calls.push_back(count);
    pool_.RunBands(count, work);
  }
  std::vector<uint32_t> calls;

 private:
  WorkerPool& pool_;
};

// Interleaved files unpacked in bands on three workers give the planes the
// sequential unpack gives, for odd widths and every depth.
TEST(ParallelUnpackTest, BandsOnThePoolMatchTheSequentialUnpack) {
  struct Case {
    const char* expression;
    uint32_t width;
    uint32_t height;
    uint32_t bytes_per_pixel_x2;  // input bytes per pixel, doubled
  };
  const Case cases[] = {
      {"I,YUYV,8", 1030, 400, 4},
      {"I,UYVY,-16", 1030, 400, 8},
      {"I,BGR,8", 1031, 401, 6},
      {"I,RGB,16", 777, 333, 12},
      {"I,YYYYUV,8", 2048, 401, 3},
  };
  WorkerPool pool(3);
  CNullLineSink log;
  for (const Case& c : cases) {
    const std::optional<FormatExpression> format = ParseFormatExpression(c.expression, 0, log);
    ASSERT_TRUE(format);
    const size_t size = size_t{c.width} * c.height * c.bytes_per_pixel_x2 / 2;
    std::vector<uint8_t> bytes(size);
    for (size_t i = 0; i < size; ++i) bytes[i] = static_cast<uint8_t>(i * 131 + i / 977);
    std::vector<uint8_t> copy = bytes;  // big-endian loads swap their input
    CountingRunner runner(pool);
    auto parallel = LoadWithFormat(*format, bytes.data(), size, c.width, c.height, log,
                                   &runner);
    auto sequential = LoadWithFormat(*format, copy.data(), size, c.width, c.height, log);
    ASSERT_TRUE(parallel && sequential) << c.expression;
    EXPECT_EQ(runner.calls, (std::vector<uint32_t>{3})) << c.expression;
    for (uint32_t p = 0; p < 3; ++p) {
      const Plane& a = parallel->GetPlane(p);
      const Plane& b = sequential->GetPlane(p);
      ASSERT_EQ(a.byte_size(), b.byte_size());
      EXPECT_EQ(0, std::memcmp(a.bytes(), b.bytes(), a.byte_size())) << c.expression << " plane " << p;
    }
  }
}

TEST(ParallelUnpackTest, SmallImagesStayOnTheCallingThread) {
  WorkerPool pool(3);
  CountingRunner runner(pool);
  CNullLineSink log;
  const std::optional<FormatExpression> format = ParseFormatExpression("I,YUYV,8", 0, log);
  ASSERT_TRUE(format);
  std::vector<uint8_t> bytes(64 * 48 * 2, 9);
  EXPECT_TRUE(LoadWithFormat(*format, bytes.data(), bytes.size(), 64, 48, log, &runner));
  EXPECT_TRUE(runner.calls.empty());
  EXPECT_EQ(pool.StartedThreads(), 0u);
}

}  // namespace
}  // namespace korvanel
