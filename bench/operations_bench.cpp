// Filter, diff and convert on 3840x2160 frames, on one thread (no pool) and
// on the whole pool. Figures are frames' pixels per second.
// bench/compare_convert.sh times ffmpeg's NV12 to RGB24 on the same frame.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <thread>

#include "frame_bytes.h"
#include "image/format_parser.h"
#include "image/image_factory.h"
#include "ops/convert_operation.h"
#include "ops/diff_operation.h"
#include "ops/filter_expression.h"
#include "ops/filter_operation.h"
#include "ops/worker_pool.h"

namespace korvanel {
namespace {

constexpr uint32_t kWidth = 3840;
constexpr uint32_t kHeight = 2160;
constexpr uint64_t kPixels = uint64_t{kWidth} * kHeight;

FormatExpression Parse(const char* text) {
  CNullLineSink log;
  return ParseFormatExpression(text, 0, log).value();
}

// A frame of the format from pseudo-random bytes, or from the raw file named
// by KORVANEL_BENCH_NV12 for the NV12 frame, so that the comparison script
// can give ffmpeg the same one.
std::unique_ptr<CImageConcreteBase> Frame(const char* format, uint32_t seed) {
  const FormatExpression f = Parse(format);
  CNullLineSink log;
  // An empty image of the format tells the frame's size.
  const auto empty = LoadWithFormat(f, nullptr, 0, kWidth, kHeight, log);
  if (!empty) return nullptr;
  const bool nv12 = std::string(format) == "PI,YYYYUV,8";
  std::optional<std::vector<uint8_t>> bytes =
      bench::FrameBytes(empty->GetRawByteSize(), seed, nv12 ? "KORVANEL_BENCH_NV12" : nullptr);
  if (!bytes) return nullptr;
  return LoadWithFormat(f, bytes->data(), bytes->size(), kWidth, kHeight, log);
}

WorkerPool* Pool(bool parallel) {
  static WorkerPool pool(std::max(1u, std::thread::hardware_concurrency()));
  return parallel ? &pool : nullptr;
}

void BM_Filter(benchmark::State& state, const char* format, const char* expression) {
  auto image = Frame(format, 7);
  FilterTables tables;
  FilterParseState parse;
  ParseFilterExpression(expression, image->GetBitsPerComponent(), image->PlaneCount(), tables, parse);
  JobRunner runner(Pool(state.range(0) != 0));
  for (auto _ : state) {
    const BandRun run = RunFilter(*image, tables, false, expression, runner, nullptr);
    if (!run.ok) state.SkipWithError("filter failed");
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPixels));
}
BENCHMARK_CAPTURE(BM_Filter, grey8, "P,Y,8", "10-100,^50")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Filter, grey16, "P,Y,16", "1000-40000")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Filter, rgb8, "I,RGB,8", "0-100;50-*;*")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_Diff(benchmark::State& state, const char* format) {
  auto left = Frame(format, 1);
  auto right = Frame(format, 2);
  JobRunner runner(Pool(state.range(0) != 0));
  for (auto _ : state) {
    DiffRun run = RunDiff(*left, *right, 1, runner, nullptr);
    if (!run.image) state.SkipWithError("diff failed");
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPixels));
}
BENCHMARK_CAPTURE(BM_Diff, rgb8, "I,RGB,8")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Diff, grey16, "P,Y,16")->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

void BM_ConvertNv12ToRgb(benchmark::State& state, bool resize) {
  auto nv12 = Frame("PI,YYYYUV,8", 3);
  ConvertRequest request;
  request.target = Parse("I,RGB,8");
  request.yuv_to_rgb = kDefaultYuvToRgb;
  request.rgb_to_yuv = kDefaultRgbToYuv;
  if (resize) {
    request.resize = true;
    request.size = {kWidth * 2, kHeight * 2};
  }
  JobRunner runner(Pool(state.range(0) != 0));
  for (auto _ : state) {
    ConvertRun run = RunConvert(*nv12, request, runner, nullptr);
    if (!run.image) state.SkipWithError("convert failed");
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kPixels * (resize ? 4 : 1)));
}
BENCHMARK_CAPTURE(BM_ConvertNv12ToRgb, same_size, false)->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ConvertNv12ToRgb, resize_2x, true)->Arg(0)->Arg(1)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace korvanel
