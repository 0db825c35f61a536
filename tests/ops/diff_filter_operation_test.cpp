#include <gtest/gtest.h>

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "ops/diff_operation.h"
#include "ops/filter_expression.h"
#include "ops/filter_operation.h"
#include "ops/worker_pool.h"
#include "support/image_builders.h"

namespace korvanel {
namespace {

using test::MakePlane;

std::unique_ptr<CImageRgb> Noise(uint32_t w, uint32_t h, uint32_t seed) {
  auto image = std::make_unique<CImageRgb>();
  std::vector<Plane> planes;
  for (uint32_t c = 0; c < 3; ++c) {
    planes.push_back(MakePlane(16, w, h, [&](uint32_t x, uint32_t y) {
      return ((x * 2654435761u) ^ (y * 40503u) ^ (c * 977u + seed)) & 0xFFFF;
    }));
  }
  image->AdoptPlanes(std::move(planes));
  return image;
}

TEST(DiffOperation, TypeIndexToRoutineCode) {
  EXPECT_EQ(DiffRoutineCode(0), 0u);  // all pixels, binary
  EXPECT_EQ(DiffRoutineCode(1), 2u);  // masked, binary
  EXPECT_EQ(DiffRoutineCode(2), 1u);  // all pixels, absolute
  EXPECT_EQ(DiffRoutineCode(3), 3u);  // masked, absolute
}

TEST(Operations, OneWorkerAndManyGiveTheSameResults) {
  // 301 x 97: wider than tall, so the pool cuts columns and mask words are
  // shared between bands on every row.
  WorkerPool pool(3);
  JobRunner parallel(&pool);
  JobRunner single(nullptr);
  for (uint32_t code = 0; code < 4; ++code) {
    auto a1 = Noise(301, 97, 1), b1 = Noise(301, 97, 2);
    auto a2 = Noise(301, 97, 1), b2 = Noise(301, 97, 2);
    FilterTables tables;
    FilterParseState state;
    ASSERT_TRUE(ParseFilterExpression("0-30000;^100-200,*;40000-*", 16, 3, tables, state));
    ASSERT_TRUE(RunFilter(*a1, tables, code % 2 == 0, "f", single, nullptr).ok);
    ASSERT_TRUE(RunFilter(*b1, tables, false, "f", single, nullptr).ok);
    const BandRun run = RunFilter(*a2, tables, code % 2 == 0, "f", parallel, nullptr);
    ASSERT_TRUE(run.ok);
    EXPECT_TRUE(run.parallel);
    ASSERT_TRUE(RunFilter(*b2, tables, false, "f", parallel, nullptr).ok);
    EXPECT_EQ(a1->SelectionMask(), a2->SelectionMask());
    for (uint32_t y = 0; y < 97; y += 5) {
      for (uint32_t x = 0; x < 301; ++x) {
        std::array<uint32_t, 3> v1{}, v2{};
        a1->GetSampleValues(x, y, v1);
        a2->GetSampleValues(x, y, v2);
        ASSERT_EQ(v1, v2) << x << "," << y;
      }
    }
    DiffRun d1 = RunDiff(*a1, *b1, code, single, nullptr);
    DiffRun d2 = RunDiff(*a2, *b2, code, parallel, nullptr);
    ASSERT_NE(d1.image, nullptr);
    ASSERT_NE(d2.image, nullptr);
    const Plane& p1 = d1.image->GetPlane(0);
    const Plane& p2 = d2.image->GetPlane(0);
    EXPECT_EQ(std::vector<uint8_t>(p1.bytes(), p1.bytes() + p1.byte_size()),
              std::vector<uint8_t>(p2.bytes(), p2.bytes() + p2.byte_size()))
        << "code " << code;
  }
}

}  // namespace
}  // namespace korvanel
