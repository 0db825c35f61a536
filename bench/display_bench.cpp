// Display rendition of a 3840x2160 frame against a memcpy of the rendition's
// bytes (4 per pixel) in the same run: compare the two times.
#include <benchmark/benchmark.h>

#include <cstring>
#include <memory>
#include <vector>

#include "image/display_conversion.h"
#include "image/format_parser.h"
#include "image/image_factory.h"
#include "image/layout_stage.h"
#include "ops/job_runner.h"
#include "ops/worker_pool.h"

namespace korvanel {
namespace {

constexpr uint32_t kWidth = 3840;
constexpr uint32_t kHeight = 2160;
constexpr uint64_t kPixels = uint64_t{kWidth} * kHeight;

struct DisplayFormat {
  const char* expression;
  uint64_t input_bytes;
};

const DisplayFormat kDisplayFormats[] = {
    {"PI,YYYYUV,8", kPixels * 3 / 2},
    {"I,YUYV,8", kPixels * 2},
    {"P,Y,U,V,16", kPixels * 6},
    {"LSB=10,P,Y,U,V,16", kPixels * 6},  // the same frame as 10-bit values, masked
};

std::unique_ptr<CImageConcreteBase> LoadFrame(const DisplayFormat& f) {
  CNullLineSink log;
  const FormatExpression format = ParseFormatExpression(f.expression, 0, log).value();
  std::vector<uint8_t> bytes(f.input_bytes);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i * 131 + (i >> 12));
  if (format.raw.bits != 0) {
    for (size_t i = 1; i < bytes.size(); i += 2) bytes[i] &= 3;
  }
  return LoadWithLayout(format, bytes.data(), bytes.size(), kWidth, kHeight, log, nullptr);
}

// The second argument: 0 builds on the calling thread, 1 in bands on a pool
// of one worker per processor.
void BM_DisplayRendition(benchmark::State& state) {
  const DisplayFormat& f = kDisplayFormats[state.range(0)];
  auto image = LoadFrame(f);
  if (!image) {
    state.SkipWithError("load failed");
    return;
  }
  static WorkerPool pool(LogicalProcessorCount());
  JobRunner runner(state.range(1) != 0 ? &pool : nullptr);
  // Every frame here is YUV: its rendition goes through the transform. A
  // new rendition each time, as a refresh makes.
  for (auto _ : state) {
    DisplayRendition rendition;
    if (!BuildYuvRendition(image->ShownPlanes(), g_yuv_to_rgb, rendition, &runner, image->RawLayout().bits)) {
      state.SkipWithError("rendition failed");
    }
    benchmark::DoNotOptimize(rendition.pixels.data());
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPixels));
  state.SetLabel(f.expression);
}
BENCHMARK(BM_DisplayRendition)->ArgsProduct({{0, 1, 2, 3}, {0, 1}})->UseRealTime()->Unit(benchmark::kMillisecond);

// A 16-bit grey frame shown by its top byte (0) and as 10 significant bits (1).
void BM_SignificantRendition(benchmark::State& state) {
  const uint32_t significant = state.range(0) == 0 ? 0 : 10;
  Plane plane;
  if (!plane.Allocate(16, kWidth, kHeight)) {
    state.SkipWithError("no memory");
    return;
  }
  for (uint32_t y = 0; y < kHeight; ++y) {
    uint16_t* row = plane.Row<uint16_t>(y);
    for (uint32_t x = 0; x < kWidth; ++x) row[x] = static_cast<uint16_t>((x * 7 + y) & 1023);
  }
  for (auto _ : state) {
    DisplayRendition rendition;
    if (!BuildGrayRendition(plane, rendition, nullptr, significant)) state.SkipWithError("rendition failed");
    benchmark::DoNotOptimize(rendition.pixels.data());
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPixels));
  state.SetLabel(significant == 0 ? "P,Y,16" : "LSB=10,P,Y,16");
}
BENCHMARK(BM_SignificantRendition)->DenseRange(0, 1)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_MemcpyRendition(benchmark::State& state) {
  const uint64_t bytes = kPixels * 4;
  std::vector<uint8_t> src(bytes, 1);
  for (auto _ : state) {
    std::unique_ptr<uint8_t[]> dst(new uint8_t[bytes]);
    std::memcpy(dst.get(), src.data(), bytes);
    benchmark::DoNotOptimize(dst.get());
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPixels));
}
BENCHMARK(BM_MemcpyRendition)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace korvanel
