// The shuffle kernel and band splitting must give exactly what the portable
// position-by-position walk gives, at every size and band boundary.
#include "image/interleave_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
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

struct LayoutCase {
  const char* layout;
  const char* components;
};

constexpr LayoutCase kLayouts[] = {
    {"YUYV", "YUV"},   {"UYVY", "YUV"},   {"YVYU", "YUV"}, {"VYUY", "YUV"},
    {"YYYYUV", "YUV"}, {"YUV", "YUV"},    {"VUY", "YUV"},  {"YYUUVV", "YUV"},
    {"YYYYUUV", "YUV"}, {"RGB", "RGB"},   {"BGR", "RGB"},  {"GBR", "RGB"},
};

// Input bytes of a w x h frame: whole groups plus the partial tail.
uint64_t FrameBytes(const std::array<uint32_t, 3>& counts, uint32_t bits, uint64_t pixels) {
  const uint32_t m = *std::max_element(counts.begin(), counts.end());
  uint64_t samples = 0;
  for (uint32_t c : counts) samples += c * pixels / m;
  return samples * bits / 8;
}

TEST(InterleavePlan, ShuffleKernelAndBandsMatchThePortableWalk) {
  std::mt19937 rng(1234);
  for (const LayoutCase& lc : kLayouts) {
    const auto counts = Counts(lc.layout, lc.components);
    for (uint32_t bits : {8u, 16u, 32u}) {
      for (uint32_t w : {1u, 2u, 3u, 7u, 8u, 17u, 64u, 67u}) {
        for (uint32_t h : {1u, 3u}) {
          SCOPED_TRACE(std::string(lc.layout) + "/" + std::to_string(bits) + "/" +
                       std::to_string(w) + "x" + std::to_string(h));
          const InterleavePlan plan(lc.layout, lc.components, counts, bits);
          const uint64_t groups = plan.GroupCount(uint64_t{w} * h);
          std::vector<uint8_t> src(FrameBytes(counts, bits, uint64_t{w} * h));
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

// Every width up to a few steps past the first, bands starting at odd
// groups and ending at the plane's end or short of it, whole and cut-short
// inputs (each in a buffer of exactly its size): the vector path writes
// exactly the band's pixels, with the values the portable walk gives.
TEST(InterleavePlan, ShuffleKernelMatchesThePortableWalkAtEveryWidthAndOddStart) {
  std::mt19937 rng(99);
  for (const LayoutCase& lc : kLayouts) {
    const auto counts = Counts(lc.layout, lc.components);
    for (uint32_t bits : {8u, 16u}) {
      const InterleavePlan plan(lc.layout, lc.components, counts, bits);
      for (uint32_t w = 1; w <= 67; ++w) {
        const uint64_t groups = plan.GroupCount(w);
        const uint64_t full = FrameBytes(counts, bits, w);
        for (uint64_t cut : {uint64_t{0}, uint64_t{5}}) {
          if (cut >= full) continue;
          std::vector<uint8_t> src(full - cut);
          for (uint8_t& b : src) b = static_cast<uint8_t>(rng());
          for (uint64_t begin : {uint64_t{1}, uint64_t{3}, uint64_t{7}}) {
            for (uint64_t short_of_end : {uint64_t{0}, uint64_t{1}, uint64_t{3}}) {
              if (begin + short_of_end >= groups) continue;
              const uint64_t end = groups - short_of_end;
              SCOPED_TRACE(std::string(lc.layout) + "/" + std::to_string(bits) + " w=" +
                           std::to_string(w) + " cut=" + std::to_string(cut) + " groups " +
                           std::to_string(begin) + ".." + std::to_string(end));
              Planes portable(bits, w, 1), vector(bits, w, 1);
              plan.RunGroupsPortable(begin, end, src.data(), src.size(), portable.ptrs);
              plan.RunGroups(begin, end, src.data(), src.size(), vector.ptrs);
              EXPECT_TRUE(vector == portable);
            }
          }
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
  EXPECT_TRUE(InterleavePlan("RGB", "RGB", {1, 1, 1}, 16).UsesShuffleKernel());
  EXPECT_FALSE(InterleavePlan("RGB", "RGB", {1, 1, 1}, 32).UsesShuffleKernel());
}

}  // namespace
}  // namespace korvanel
