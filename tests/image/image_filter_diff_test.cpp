#include <gtest/gtest.h>

#include <optional>

#include "image/image_diff.h"
#include "image/image_filter.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "ops/filter_expression.h"
#include "support/image_builders.h"

namespace korvanel {
namespace {

using test::MakePlane;

template <typename Image>
std::unique_ptr<Image> FromValues(uint32_t bits, uint32_t w, uint32_t h,
                                  const std::vector<std::vector<uint32_t>>& components) {
  auto image = std::make_unique<Image>();
  std::vector<Plane> planes;
  for (const auto& values : components) {
    planes.push_back(MakePlane(bits, w, h, [&](uint32_t x, uint32_t y) { return values[y * w + x]; }));
  }
  EXPECT_TRUE(image->AdoptPlanes(std::move(planes)));
  return image;
}

std::array<uint32_t, 3> At(const IImageContainer& image, uint32_t x, uint32_t y) {
  std::array<uint32_t, 3> v{};
  image.GetSampleValues(x, y, v);
  return v;
}

Rect Whole(const IImageContainer& image) {
  uint32_t w = 0, h = 0;
  image.GetSize(w, h);
  return {0, 0, w - 1, h - 1};
}

bool Filter(CImageConcreteBase& image, const char* expression, const char* negation, bool all) {
  FilterTables tables;
  FilterParseState state;
  if (!ParseFilterExpression(expression, image.GetBitsPerComponent(), image.PlaneCount(), tables, state) ||
      !ParseNegationColor(negation, tables, state) || !BeginFilter(image, expression)) {
    return false;
  }
  return ApplyFilterBand(image, tables, all, Whole(image), {});
}

TEST(ApplyFilter, RgbComponentsPassOnTheirOwnOrAllTogether) {
  auto rgb = FromValues<CImageRgb>(8, 2, 1, {{60, 110}, {210, 220}, {90, 50}});
  ASSERT_TRUE(Filter(*rgb, "100-128;200-*;*-80", "0", false));
  EXPECT_EQ(At(*rgb, 0, 0), (std::array<uint32_t, 3>{0, 210, 0}));
  EXPECT_TRUE(rgb->IsSelected(0, 0));
  EXPECT_EQ(At(*rgb, 1, 0), (std::array<uint32_t, 3>{110, 220, 50}));

  ASSERT_TRUE(Filter(*rgb, "100-128;200-*;*-80", "1,2,3", true));
  EXPECT_EQ(At(*rgb, 0, 0), (std::array<uint32_t, 3>{1, 2, 3}));
  EXPECT_FALSE(rgb->IsSelected(0, 0));
  EXPECT_TRUE(rgb->IsSelected(1, 0));
  EXPECT_EQ(rgb->FilterLabel(), "100-128;200-*;*-80");

  rgb->ClearFilter();
  EXPECT_EQ(At(*rgb, 0, 0), (std::array<uint32_t, 3>{60, 210, 90}));
  EXPECT_TRUE(rgb->IsSelected(0, 0));
}

TEST(ApplyFilter, EmptyExpressionMasksEverythingOut) {
  auto gray = FromValues<CImageGray>(16, 3, 1, {{0, 1000, 65535}});
  ASSERT_TRUE(Filter(*gray, "", "7", false));
  for (uint32_t x = 0; x < 3; ++x) {
    EXPECT_EQ(At(*gray, x, 0)[0], 7u);
    EXPECT_FALSE(gray->IsSelected(x, 0));
  }
}

TEST(ApplyFilter, OnlyTheBandChangesAndMaskWordsAcrossRowsStayRight) {
  // Width 5: mask words straddle rows, and bands write them one row at a time.
  std::vector<uint32_t> values(5 * 40);
  for (uint32_t i = 0; i < values.size(); ++i) values[i] = i % 7;
  auto gray = FromValues<CImageGray>(8, 5, 40, {values});
  FilterTables tables;
  FilterParseState state;
  ASSERT_TRUE(ParseFilterExpression("0-2", 8, 1, tables, state));
  ASSERT_TRUE(BeginFilter(*gray, "0-2"));
  ASSERT_TRUE(ApplyFilterBand(*gray, tables, false, {1, 2, 3, 38}, {}));
  for (uint32_t y = 0; y < 40; ++y) {
    for (uint32_t x = 0; x < 5; ++x) {
      const uint32_t v = values[y * 5 + x];
      const bool inside = x >= 1 && x <= 3 && y >= 2 && y <= 38;
      const bool in = !inside || v <= 2;
      EXPECT_EQ(gray->IsSelected(x, y), in) << x << "," << y;
      EXPECT_EQ(At(*gray, x, y)[0], in ? v : 0u) << x << "," << y;
    }
  }
}

TEST(ApplyFilter, ThirtyTwoBitImagesAreRefused) {
  auto gray = FromValues<CImageGray>(32, 1, 1, {{5}});
  EXPECT_FALSE(BeginFilter(*gray, "*"));
  EXPECT_FALSE(gray->HasFilter());
}

TEST(ApplyFilter, CancelStopsAfterTheCurrentRow) {
  auto gray = FromValues<CImageGray>(8, 4, 4, {std::vector<uint32_t>(16, 1)});
  FilterTables tables;
  FilterParseState state;
  ASSERT_TRUE(ParseFilterExpression("*", 8, 1, tables, state));
  ASSERT_TRUE(BeginFilter(*gray, "*"));
  struct StopAtOnce : IRowObserver {
    bool RowDone(uint32_t pixels) override {
      counted += pixels;
      return false;
    }
    uint32_t counted = 0;
  } observer;
  EXPECT_FALSE(ApplyFilterBand(*gray, tables, false, Whole(*gray), &observer));
  EXPECT_EQ(observer.counted, 4u);
}

// The 8-bit difference image of `code` over `region` (default: all of it).
std::vector<uint32_t> Diff(const CImageConcreteBase& left, const CImageConcreteBase& right,
                           uint32_t code, std::optional<Rect> region = {}) {
  Plane out;
  uint32_t w = 0, h = 0;
  left.GetSize(w, h);
  EXPECT_TRUE(out.Allocate(8, w, h, true));
  EXPECT_TRUE(DiffBand(left, right, code, region.value_or(Whole(left)), out, {}));
  return test::PlaneSamples(out);
}

using Samples = std::vector<uint32_t>;

TEST(DiffBand, GreyRulesAtEveryDepth) {
  // 8 bits cannot hold 1000: that depth is checked with its own values below.
  for (uint32_t bits : {16u, 32u}) {
    auto left = FromValues<CImageGray>(bits, 4, 1, {{0, 5, 1000, 7}});
    auto right = FromValues<CImageGray>(bits, 4, 1, {{0, 9, 0, 7}});
    const Samples expected[] = {{0, 255, 255, 0}, {0, 4, 255, 0}, {0, 255, 255, 0}, {0, 4, 255, 0}};
    for (uint32_t code = 0; code < 4; ++code) {
      EXPECT_EQ(Diff(*left, *right, code), expected[code]) << bits << "/" << code;
    }
  }
  auto a = FromValues<CImageGray>(8, 2, 1, {{200, 3}});
  auto b = FromValues<CImageGray>(8, 2, 1, {{3, 200}});
  EXPECT_EQ(Diff(*a, *b, 1), (Samples{197, 197}));
}

TEST(DiffBand, ThreeComponentsTakeTheLargestDelta) {
  auto left = FromValues<CImageRgb>(16, 2, 1, {{10, 10}, {20, 20}, {30, 30}});
  auto right = FromValues<CImageRgb>(16, 2, 1, {{10, 12}, {20, 20}, {30, 90}});
  EXPECT_EQ(Diff(*left, *right, 1), (Samples{0, 60}));
  EXPECT_EQ(Diff(*left, *right, 0), (Samples{0, 255}));
}

TEST(DiffBand, MaskedCodesWriteOnlyPixelsInBothMasks) {
  auto left = FromValues<CImageGray>(8, 4, 1, {{1, 2, 3, 4}});
  auto right = FromValues<CImageGray>(8, 4, 1, {{9, 9, 9, 9}});
  // Without masks the masked code behaves as the plain one.
  EXPECT_EQ(Diff(*left, *right, 2), (Samples{255, 255, 255, 255}));
  ASSERT_TRUE(Filter(*left, "1-3", "0", false));  // pixels 0..2 in
  ASSERT_TRUE(Filter(*right, "*", "0", false));   // all in
  // Masked out in the left image: left at its initial value.
  EXPECT_EQ(Diff(*left, *right, 3), (Samples{8, 7, 6, 0}));
}

TEST(DiffBand, OnlyTheRegionIsWritten) {
  auto left = FromValues<CImageGray>(8, 3, 3, {std::vector<uint32_t>(9, 1)});
  auto right = FromValues<CImageGray>(8, 3, 3, {std::vector<uint32_t>(9, 2)});
  EXPECT_EQ(Diff(*left, *right, 0, Rect{1, 1, 2, 1}), (Samples{0, 0, 0, 0, 255, 255, 0, 0, 0}));
}


TEST(ApplyFilter, KeepingOnlyTheTablesShowsTheSameValues) {
  // Two identical RGB images, one of them trading its shown copy for tables.
  auto make = [] {
    return FromValues<CImageRgb>(8, 3, 2, {{60, 110, 5, 7, 200, 9}, {210, 220, 1, 250, 3, 4}, {90, 50, 2, 80, 81, 6}});
  };
  for (bool all : {false, true}) {
    auto full = make();
    auto lean = make();
    FilterTables tables;
    FilterParseState state;
    ASSERT_TRUE(ParseFilterExpression("100-128;200-*;*-80", 8, 3, tables, state));
    ASSERT_TRUE(ParseNegationColor("1,2,3", tables, state));
    for (auto* image : {full.get(), lean.get()}) {
      ASSERT_TRUE(BeginFilter(*image, "f"));
      ASSERT_TRUE(ApplyFilterBand(*image, tables, all, Whole(*image), nullptr));
    }
    lean->KeepFilterTablesOnly(std::make_shared<const FilterTables>(tables), all);
    EXPECT_TRUE(lean->FilteredPlanes().empty());
    EXPECT_TRUE(lean->HasFilter());
    for (uint32_t y = 0; y < 2; ++y) {
      for (uint32_t x = 0; x < 3; ++x) {
        EXPECT_EQ(At(*lean, x, y), At(*full, x, y)) << x << "," << y << " all=" << all;
        EXPECT_EQ(lean->IsSelected(x, y), full->IsSelected(x, y));
      }
    }
    const DisplayRendition* a = full->BuildDisplay();
    const DisplayRendition* b = lean->BuildDisplay();
    ASSERT_NE(a, nullptr);
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(a->pixels, b->pixels);
    EXPECT_TRUE(lean->FilteredPlanes().empty()) << "the copy lives only while rendering";
  }
}

}  // namespace
}  // namespace korvanel
