// The image evaluator on a 3840x2160 8-bit grey frame: each expression on one
// worker and on the whole pool. Figures are megapixels per second (MP/s);
// the pool's speed-up is the ratio of the two rows of an expression.
// bench/compare_ieval.sh runs the same expressions through numpy and
// ImageMagick on the same frames.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <vector>

#include "frame_bytes.h"
#include "image/image_gray.h"
#include "ops/ieval_operation.h"
#include "ops/worker_pool.h"

namespace korvanel {
namespace {

constexpr uint32_t kWidth = 3840;
constexpr uint32_t kHeight = 2160;

const char* const kExpressions[] = {
    "{(i1+i2)/2}",
    "{i*2+10}",
    "{(i[x-1,y]+i[x+1,y]+i[x,y-1]+i[x,y+1])/4}",
};

// The frames of the comparison script, or pseudo-random ones.
std::unique_ptr<CImageGray> Frame(uint32_t seed, const char* variable) {
  std::optional<std::vector<uint8_t>> bytes = bench::FrameBytes(size_t{kWidth} * kHeight, seed, variable);
  if (!bytes) return nullptr;
  auto image = std::make_unique<CImageGray>();
  if (!image->Load(bytes->data(), bytes->size(), kWidth, kHeight, "Y", 8)) return nullptr;
  return image;
}

void BM_IEval(benchmark::State& state) {
  static const auto first = Frame(1, "KORVANEL_BENCH_FRAME1");
  static const auto second = Frame(2, "KORVANEL_BENCH_FRAME2");
  if (!first || !second) {
    state.SkipWithError("cannot read the frames");
    return;
  }
  const bool whole_pool = state.range(1) != 0;
  WorkerPool pool(whole_pool ? LogicalProcessorCount() : 1);
  JobRunner runner(&pool);
  IEvalRequest request;
  request.expression = kExpressions[state.range(0)];
  for (auto _ : state) {
    IEvalResult result = RunImageEval(request, {first.get(), second.get()}, runner);
    if (!result.ok) {
      state.SkipWithError(result.messages.empty() ? "failed" : result.messages[0].text.c_str());
      return;
    }
    benchmark::DoNotOptimize(result.outputs[0].image.get());
  }
  state.SetLabel(std::string(request.expression) + (whole_pool ? " pool" : " 1 worker"));
  state.counters["workers"] = pool.Capacity();
  state.counters["MP/s"] = benchmark::Counter(
      static_cast<double>(state.iterations()) * kWidth * kHeight / 1e6, benchmark::Counter::kIsRate);
}

BENCHMARK(BM_IEval)
    ->ArgsProduct({{0, 1, 2}, {0, 1}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

}  // namespace
}  // namespace korvanel
