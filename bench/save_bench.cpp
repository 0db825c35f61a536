// Statistics of a 3840x2160 grey frame, and text, hex and raw saves of a
// 1920x1080 grey frame written to a temporary file. The raw save is set
// against a plain fwrite of the same bytes.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "image/image_gray.h"
#include "image/save_request.h"
#include "image/statistics.h"

namespace korvanel {
namespace {

std::unique_ptr<CImageGray> GreyFrame(uint32_t bits, uint32_t width, uint32_t height) {
  std::vector<Plane> planes(1);
  planes[0].Allocate(bits, width, height);
  uint8_t* bytes = planes[0].bytes();
  for (uint64_t i = 0; i < planes[0].byte_size(); ++i) {
    bytes[i] = static_cast<uint8_t>((i * 2654435761u) >> 13);
  }
  auto image = std::make_unique<CImageGray>();
  image->AdoptPlanes(std::move(planes));
  return image;
}

std::string BenchPath() {
  return (std::filesystem::temp_directory_path() /
          ("korvanel_bench_" + std::to_string(getpid()) + ".out"))
      .string();
}

void BM_Statistics(benchmark::State& state) {
  const auto bits = static_cast<uint32_t>(state.range(0));
  auto image = GreyFrame(bits, 3840, 2160);
  const Rect area{0, 0, 3839, 2159};
  for (auto _ : state) {
    ComponentStatistics stats = ComputeStatistics(image->GetPlane(0), area, {});
    benchmark::DoNotOptimize(stats.mean);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 3840 * 2160);
}
BENCHMARK(BM_Statistics)->Arg(8)->Arg(16)->Unit(benchmark::kMillisecond);

void BM_SaveGrey(benchmark::State& state) {
  const auto mode = static_cast<SaveMode>(state.range(0));
  auto image = GreyFrame(8, 1920, 1080);
  SaveRequest request;
  request.path = BenchPath();
  request.mode = mode;
  request.area = Rect{0, 0, 1919, 1079};
  for (auto _ : state) {
    if (!image->Save(request)) state.SkipWithError("save failed");
  }
  std::filesystem::remove(request.path);
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 1920 * 1080);
  static constexpr const char* kNames[] = {"raw", "text", "hex", "C array"};
  state.SetLabel(kNames[state.range(0)]);
}
BENCHMARK(BM_SaveGrey)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);

// The floor for the raw save: the same bytes in one fwrite.
void BM_FwriteGrey(benchmark::State& state) {
  const std::string path = BenchPath();
  std::vector<uint8_t> bytes(1920 * 1080, 7);
  for (auto _ : state) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    std::fwrite(bytes.data(), 1, bytes.size(), f);
    std::fclose(f);
  }
  std::filesystem::remove(path);
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 1920 * 1080);
}
BENCHMARK(BM_FwriteGrey)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace korvanel
