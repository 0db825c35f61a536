// Unpacking a 3840x2160 frame in the common formats, against a memcpy of the
// same number of output bytes (the planes the unpack fills). Figures are
// bytes of input per second; compare each unpack's time with the memcpy of
// its output size.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstring>
#include <vector>

#include "image/format_parser.h"
#include "image/image_factory.h"
#include "image/layout_stage.h"

namespace korvanel {
namespace {

// Serve every frame from a warm heap: without this, glibc hands large blocks
// back to the system on free and each iteration pays first-touch page faults
// for its planes, which swamps the copy work being measured (and hits the
// unpack and the baseline unevenly, depending on block sizes).
const bool kWarmHeap = [] {
  mallopt(M_MMAP_THRESHOLD, 1 << 30);
  mallopt(M_TRIM_THRESHOLD, 1 << 30);
  return true;
}();

constexpr uint32_t kWidth = 3840;
constexpr uint32_t kHeight = 2160;

struct BenchFormat {
  const char* expression;
  uint64_t input_bytes;
  uint64_t output_bytes;
};

constexpr uint64_t kPixels = uint64_t{kWidth} * kHeight;

const BenchFormat kFormats[] = {
    {"PI,YYYYUV,8", kPixels * 3 / 2, kPixels * 3},
    {"I,YUYV,8", kPixels * 2, kPixels * 3},
    {"I,YUYV,-16", kPixels * 4, kPixels * 6},
    {"P,YY,U,V,8", kPixels * 2, kPixels * 3},
    {"I,RGB,8", kPixels * 3, kPixels * 3},
    {"I,BGR,16", kPixels * 6, kPixels * 6},
    {"P,Y,8", kPixels, kPixels},
    {"P,Y,-32", kPixels * 4, kPixels * 4},
};

void BM_Unpack(benchmark::State& state) {
  const BenchFormat& f = kFormats[state.range(0)];
  CNullLineSink log;
  const FormatExpression format = ParseFormatExpression(f.expression, 0, log).value();
  std::vector<uint8_t> bytes(f.input_bytes);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 131 + 7);
  for (auto _ : state) {
    auto image = LoadWithFormat(format, bytes.data(), bytes.size(), kWidth, kHeight, log);
    if (!image) state.SkipWithError("load failed");
    benchmark::DoNotOptimize(image.get());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.input_bytes));
  state.SetLabel(f.expression);
}
BENCHMARK(BM_Unpack)->DenseRange(0, 7)->Unit(benchmark::kMillisecond);

// The baseline: a new destination each time, as a load has.
void BM_MemcpyOutput(benchmark::State& state) {
  const BenchFormat& f = kFormats[state.range(0)];
  std::vector<uint8_t> src(f.output_bytes, 1);
  for (auto _ : state) {
    std::unique_ptr<uint8_t[]> dst(new uint8_t[f.output_bytes]);
    std::memcpy(dst.get(), src.data(), f.output_bytes);
    benchmark::DoNotOptimize(dst.get());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * f.output_bytes));
  state.SetLabel(f.expression);
}
BENCHMARK(BM_MemcpyOutput)->DenseRange(0, 7)->Unit(benchmark::kMillisecond);

// Significant-bits layouts against the plain 16-bit load of the same frame
// (rows 0 and 3): the attribute's census and MSB shift are the extra cost.
// Values are 10-bit, MSB rows aligned, so no census warning is logged.
const char* const kLayoutFormats[] = {
    "P,Y,16", "LSB=10,P,Y,16", "MSB=10,P,Y,16", "PI,YYYYUV,16", "LSB=10,PI,YYYYUV,16", "MSB=10,PI,YYYYUV,16",
};

void BM_LayoutLoad(benchmark::State& state) {
  CNullLineSink log;
  const FormatExpression format = ParseFormatExpression(kLayoutFormats[state.range(0)], 0, log).value();
  const uint64_t samples = format.color_kind == ColorKind::Gray ? kPixels : kPixels * 3 / 2;
  std::vector<uint16_t> words(samples);
  const uint32_t shift = format.raw.MsbShift(16);
  for (size_t i = 0; i < words.size(); ++i) words[i] = static_cast<uint16_t>(((i * 131 + 7) & 1023) << shift);
  auto* bytes = reinterpret_cast<uint8_t*>(words.data());
  for (auto _ : state) {
    auto image = LoadWithLayout(format, bytes, samples * 2, kWidth, kHeight, log, nullptr);
    if (!image) state.SkipWithError("load failed");
    benchmark::DoNotOptimize(image.get());
  }
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * samples * 2));
  state.SetLabel(kLayoutFormats[state.range(0)]);
}
BENCHMARK(BM_LayoutLoad)->DenseRange(0, 5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace korvanel
