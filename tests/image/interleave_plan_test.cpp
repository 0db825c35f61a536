// The shuffle kernel and band splitting must give exactly what the portable
// position-by-position walk gives, at every size and band boundary.
#include "image/interleave_plan.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "image/interleave_shuffle.h"

namespace korvanel {
namespace {

struct Planes {
  Planes(uint32_t bits, uint32_t w, uint32_t h) {
    for (Plane& p : planes) {
      p.Allocate(bits, w, h);
      std::memset(p.bytes(), 0xEE, static_cast<size_t>(p.byte_size()));
    }
  }
  std::array<Plane, 3> planes;
  Plane* ptrs[3] = {&planes[0], &planes[1], &planes[2]};
  bool operator==(const Planes& o) const {
    for (int c = 0; c < 3; ++c) {
      if (std::memcmp(planes[c].bytes(), o.planes[c].bytes(), planes[c].byte_size()) != 0) return false;
    }
    return true;
  }
};

std::array<uint32_t, 3> Counts(const std::string& layout, const char* components) {
  std::array<uint32_t, 3> counts{};
  for (char c : layout) counts[std::string_view(components).find(c)]++;
  return counts;
}

TEST(InterleavePlan, ShuffleKernelAndBandsMatchThePortableWalk) {
  const char* layouts[] = {"YUYV", "UYVY", "YVYU", "VYUY", "YYYYUV", "YUV", "VUY", "YYUUVV", "YYYYUUV"};
  const char* rgb_layouts[] = {"RGB", "BGR", "GBR"};
  std::mt19937 rng(1234);
  std::vector<std::pair<std::string, const char*>> all;
  for (const char* l : layouts) all.emplace_back(l, "YUV");
  for (const char* l : rgb_layouts) all.emplace_back(l, "RGB");
  for (const auto& [layout, components] : all) {
    const auto counts = Counts(layout, components);
    for (uint32_t bits : {8u, 16u, 32u}) {
      for (uint32_t w : {1u, 2u, 3u, 7u, 8u, 17u, 64u, 67u}) {
        for (uint32_t h : {1u, 3u}) {
          SCOPED_TRACE(layout + "/" + std::to_string(bits) + "/" + std::to_string(w) + "x" +
                       std::to_string(h));
          const InterleavePlan plan(layout, components, counts, bits);
          const uint64_t pixels = uint64_t{w} * h;
          const uint32_t m = *std::max_element(counts.begin(), counts.end());
          const uint64_t groups = plan.GroupCount(pixels);
          // Exactly the frame size: whole groups plus the partial tail.
          uint64_t samples = 0;
          for (uint32_t c : counts) samples += c * pixels / m;
          std::vector<uint8_t> src(samples * bits / 8);
          for (uint8_t& b : src) b = static_cast<uint8_t>(rng());

          Planes portable(bits, w, h), whole(bits, w, h), banded(bits, w, h);
          plan.RunGroupsPortable(0, groups, src.data(), src.size(), portable.ptrs);
          plan.RunAll(src.data(), src.size(), whole.ptrs);
          EXPECT_TRUE(whole == portable);
          for (uint64_t g = 0; g < groups;) {
            const uint64_t next = std::min<uint64_t>(groups, g + 1 + rng() % 9);
            plan.RunGroups(g, next, src.data(), src.size(), banded.ptrs);
            g = next;
          }
          EXPECT_TRUE(banded == portable);
        }
      }
    }
  }
}

TEST(InterleavePlan, ShuffleKernelServesTheCommonLayouts) {
  if (!ShuffleKernelAvailable()) GTEST_SKIP() << "no SSSE3 on this processor";
  EXPECT_TRUE(InterleavePlan("YUYV", "YUV", {2, 1, 1}, 8).UsesShuffleKernel());
  EXPECT_TRUE(InterleavePlan("YUYV", "YUV", {2, 1, 1}, 16).UsesShuffleKernel());
  EXPECT_TRUE(InterleavePlan("BGR", "RGB", {1, 1, 1}, 8).UsesShuffleKernel());
  EXPECT_TRUE(InterleavePlan("YYYYUV", "YUV", {4, 1, 1}, 8).UsesShuffleKernel());
  EXPECT_FALSE(InterleavePlan("RGB", "RGB", {1, 1, 1}, 32).UsesShuffleKernel());
}

}  // namespace
}  // namespace korvanel
