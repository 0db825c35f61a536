#include <gtest/gtest.h>

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"
#include "support/image_builders.h"

namespace korvanel {
namespace {

using test::MakeImage;
using test::MakePlane;

std::unique_ptr<CImageConcreteBase> MakeOfClass(const std::string& name, uint32_t bits,
                                                Packing packing = Packing::Interleave) {
  if (name == "gray") return MakeImage<CImageGray>(bits, 4, 2);
  if (name == "rgb") return MakeImage<CImageRgb>(bits, 4, 2);
  std::unique_ptr<CImageYuv> yuv;
  YuvCounts counts{1, 1, 1};
  if (name == "yuv") yuv = MakeImage<CImageYuv>(bits, 4, 2), counts = {2, 1, 1};
  if (name == "444") yuv = MakeImage<CImageYuv444>(bits, 4, 2);
  if (name == "422") yuv = MakeImage<CImageYuv422>(bits, 4, 2), counts = {2, 1, 1};
  if (name == "420") yuv = MakeImage<CImageYuv420>(bits, 4, 2), counts = {4, 1, 1};
  yuv->SetLayoutDescription(counts, packing, "YUYV");
  return yuv;
}

struct LabelCase {
  const char* cls;
  uint32_t bits;
  const char* label;
  const char* type;
};

void PrintTo(const LabelCase& c, std::ostream* os) { *os << c.cls << "/" << c.bits; }

class FormatLabels : public ::testing::TestWithParam<LabelCase> {};

TEST_P(FormatLabels, NameTheClassAndDepth) {
  auto image = MakeOfClass(GetParam().cls, GetParam().bits);
  EXPECT_EQ(image->FormatLabel(), GetParam().label);
  EXPECT_STREQ(image->TypeName(), GetParam().type);
  EXPECT_EQ(image->ComponentCount(), std::string(GetParam().type) == "GRAY" ? 1u : 3u);
}

INSTANTIATE_TEST_SUITE_P(
    EveryRow, FormatLabels,
    ::testing::Values(LabelCase{"gray", 8, "Y8", "GRAY"}, LabelCase{"gray", 32, "Y32", "GRAY"},
                      LabelCase{"rgb", 16, "RGBx16", "RGB"}, LabelCase{"444", 8, "YUV444 24bpp", "YUV"},
                      LabelCase{"422", 32, "YUV422 64bpp", "YUV"}, LabelCase{"420", 16, "YUV420 24bpp", "YUV"},
                      LabelCase{"yuv", 32, "YUVx32 (I)", "YUV"}));

TEST(FormatLabels, GeneralYuvNamesItsPackingAndEmptyImagesAreNotAvailable) {
  EXPECT_EQ(MakeOfClass("yuv", 16, Packing::Planar)->FormatLabel(), "YUVx16 (P)");
  EXPECT_EQ(MakeOfClass("yuv", 8, Packing::PlanarInterleave)->FormatLabel(), "YUVx8 (PI)");
  EXPECT_EQ(CImageGray().FormatLabel(), "N/A");
  EXPECT_EQ(CImageYuv420().FormatLabel(), "N/A");
  CImageYuv empty;
  EXPECT_EQ(empty.FormatLabel(), "N/A (I)");
}

TEST(YuvLayoutCheck, EachSubclassTakesOnlyItsSampling) {
  struct Row {
    const char* layout;
    bool yuv444, yuv422, yuv420, general;
  };
  const Row rows[] = {
      {"YUYV", false, true, false, true},   {"UYVY", false, true, false, true},
      {"YYYYUV", false, false, true, true}, {"YUV", true, false, false, true},
      {"YYYYUUVV", false, true, false, true}, {"YY U V", false, true, false, true},
      {"YYYUV", false, false, false, false},  {"YV", false, false, false, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(CImageYuv444().CheckLayout(row.layout), row.yuv444) << row.layout;
    EXPECT_EQ(CImageYuv422().CheckLayout(row.layout), row.yuv422) << row.layout;
    EXPECT_EQ(CImageYuv420().CheckLayout(row.layout), row.yuv420) << row.layout;
    EXPECT_EQ(CImageYuv().CheckLayout(row.layout), row.general) << row.layout;
  }
  CImageYuv422 image;
  ASSERT_TRUE(image.CheckLayout("UYVY"));
  EXPECT_EQ(image.Counts(), (YuvCounts{2, 1, 1}));
}

TEST(YuvFrameBytes, UsesIntegerDivisionPerComponent) {
  EXPECT_EQ(YuvFrameBytes({4, 1, 1}, 640, 480, 1), 460800u);
  EXPECT_EQ(YuvFrameBytes({2, 1, 1}, 640, 480, 2), 1228800u);
  EXPECT_EQ(YuvFrameBytes({1, 1, 1}, 3, 3, 4), 108u);
  // 4:2:2 with an odd pixel count: each chroma term rounds down on its own.
  EXPECT_EQ(YuvFrameBytes({2, 1, 1}, 3, 1, 1), 3u + 1u + 1u);
}

struct AlignCase {
  const char* cls;
  Rect in;
  Rect out;
};

void PrintTo(const AlignCase& c, std::ostream* os) { *os << c.cls; }

class ChromaGrid : public ::testing::TestWithParam<AlignCase> {};

TEST_P(ChromaGrid, WidensToWholeCells) {
  auto image = MakeOfClass(GetParam().cls, 8);
  Rect r = GetParam().in;
  ASSERT_TRUE(image->AlignToChromaGrid(r));
  EXPECT_EQ(r, GetParam().out);
}

INSTANTIATE_TEST_SUITE_P(
    EveryClass, ChromaGrid,
    ::testing::Values(AlignCase{"444", {3, 5, 6, 8}, {3, 5, 6, 8}},
                      AlignCase{"422", {3, 5, 6, 8}, {0, 5, 7, 8}},
                      AlignCase{"420", {3, 5, 6, 8}, {0, 4, 7, 9}},
                      AlignCase{"420", {4, 4, 7, 5}, {4, 4, 7, 5}},
                      // the general class with counts 2,1,1 uses 2 columns
                      AlignCase{"yuv", {3, 5, 6, 8}, {2, 5, 7, 8}},
                      AlignCase{"420", {0, 0, 0xFFFFFFFF, 0xFFFFFFFF}, {0, 0, 0xFFFFFFFF, 0xFFFFFFFF}}));

TEST(ChromaGrid, RefusedWithoutChromaOrValidCounts) {
  Rect r{1, 1, 2, 2};
  EXPECT_FALSE(MakeOfClass("gray", 8)->AlignToChromaGrid(r));
  EXPECT_FALSE(MakeOfClass("rgb", 8)->AlignToChromaGrid(r));
  auto yuv = MakeImage<CImageYuv>(8, 4, 2);
  yuv->SetLayoutDescription({3, 1, 1}, Packing::Interleave, "YYYUV");
  EXPECT_FALSE(yuv->AlignToChromaGrid(r));
  EXPECT_EQ(r, (Rect{1, 1, 2, 2}));
}

TEST(RegionOfInterest, ReportsChangesOnlyWhenTheRectangleDiffers) {
  auto image = MakeImage<CImageGray>(8, 8, 8);
  EXPECT_TRUE(image->SetRegionOfInterest({1, 1, 3, 3}));
  EXPECT_TRUE(image->RegionChanged());
  EXPECT_FALSE(image->SetRegionOfInterest({1, 1, 3, 3}));
  EXPECT_FALSE(image->RegionChanged());
  EXPECT_TRUE(image->SetRegionOfInterest({1, 1, 3, 4}));
  EXPECT_EQ(image->GetRegionOfInterest(), (Rect{1, 1, 3, 4}));
  // "none" always counts as a change.
  EXPECT_TRUE(image->SetRegionOfInterest(Rect::None()));
  EXPECT_TRUE(image->SetRegionOfInterest(Rect::None()));
  EXPECT_TRUE(image->GetRegionOfInterest().IsNone());
}

TEST(SampleValues, ReadEveryComponentAndFailOutside) {
  auto rgb = MakeImage<CImageRgb>(16, 5, 3);
  std::array<uint32_t, 3> v{};
  ASSERT_TRUE(rgb->GetSampleValues(4, 2, v));
  EXPECT_EQ(v, (std::array<uint32_t, 3>{204, 1204, 2204}));
  EXPECT_FALSE(rgb->GetSampleValues(5, 0, v));
  EXPECT_FALSE(rgb->GetSampleValues(0, -1, v));

  auto gray = MakeImage<CImageGray>(32, 5, 3);
  ASSERT_TRUE(gray->GetSampleValues(3, 1, v));
  EXPECT_EQ(v, (std::array<uint32_t, 3>{103, 103, 103}));
  // A filtered copy, when present, is what the readout shows.
  std::vector<Plane> shown;
  shown.push_back(MakePlane(32, 5, 3, [](uint32_t, uint32_t) { return 0xDEADBEEFu; }));
  gray->SetFilter({}, std::move(shown), "x");
  ASSERT_TRUE(gray->GetSampleValues(3, 1, v));
  EXPECT_EQ(v[0], 0xDEADBEEFu);
  gray->ClearFilter();
  ASSERT_TRUE(gray->GetSampleValues(3, 1, v));
  EXPECT_EQ(v[0], 103u);
}

TEST(ExtractComponent, CopiesOnePlaneIntoGray) {
  auto yuv = MakeImage<CImageYuv444>(16, 3, 2);
  for (uint32_t index : {0u, 1u, 2u, 3u}) {
    auto gray = yuv->ExtractComponent(index);
    ASSERT_NE(gray, nullptr) << index;
    EXPECT_STREQ(gray->TypeName(), "GRAY");
    EXPECT_EQ(gray->GetBitsPerComponent(), 16u);
    std::array<uint32_t, 3> v{};
    ASSERT_TRUE(gray->GetSampleValues(2, 1, v));
    EXPECT_EQ(v[0], std::min(index, 2u) * 1000 + 102) << index;
  }
  EXPECT_EQ(yuv->ExtractComponent(4), nullptr);
  auto gray = MakeImage<CImageGray>(8, 3, 2);
  EXPECT_NE(gray->ExtractComponent(0), nullptr);
  EXPECT_EQ(gray->ExtractComponent(1), nullptr);
}

TEST(Duplicate, CopiesWholeImageOrClampedRegion) {
  auto yuv = MakeImage<CImageYuv422>(16, 8, 4);
  yuv->SetLayoutDescription({2, 1, 1}, Packing::Planar, "YY U V");
  ASSERT_TRUE(yuv->SetRegionOfInterest({2, 1, 5, 2}));

  auto whole = yuv->Duplicate(DuplicateArea::WholeImage);
  ASSERT_NE(whole, nullptr);
  uint32_t w = 0, h = 0;
  whole->GetSize(w, h);
  EXPECT_EQ(w, 8u);
  EXPECT_EQ(h, 4u);
  EXPECT_TRUE(whole->GetRegionOfInterest().IsNone());
  EXPECT_EQ(whole->FormatLabel(), "YUV422 32bpp");
  EXPECT_EQ(whole->GetRawByteSize(), 128u);

  auto crop = yuv->Duplicate(DuplicateArea::RegionOfInterest);
  ASSERT_NE(crop, nullptr);
  crop->GetSize(w, h);
  EXPECT_EQ(w, 4u);
  EXPECT_EQ(h, 2u);
  std::array<uint32_t, 3> v{};
  ASSERT_TRUE(crop->GetSampleValues(0, 0, v));
  EXPECT_EQ(v, (std::array<uint32_t, 3>{102, 1102, 2102}));
  EXPECT_EQ(static_cast<CImageYuv&>(*crop).Layout(), "YY U V");

  ASSERT_TRUE(yuv->SetRegionOfInterest({6, 3, 100, 100}));
  crop = yuv->Duplicate(DuplicateArea::RegionOfInterest);
  ASSERT_NE(crop, nullptr);
  crop->GetSize(w, h);
  EXPECT_EQ(w, 2u);
  EXPECT_EQ(h, 1u);

  ASSERT_TRUE(yuv->SetRegionOfInterest({8, 0, 9, 1}));
  EXPECT_EQ(yuv->Duplicate(DuplicateArea::RegionOfInterest), nullptr);
}

TEST(SelectionMask, BitIOfWordIOver32) {
  auto gray = MakeImage<CImageGray>(8, 10, 4);
  EXPECT_TRUE(gray->IsSelected(9, 3));
  std::vector<uint32_t> mask(2, 0);
  mask[0] = 1u << 12;  // pixel 12 = (2, 1)
  mask[1] = 1u << 7;   // pixel 39 = (9, 3)
  gray->SetSelectionMask(mask);
  EXPECT_TRUE(gray->IsSelected(2, 1));
  EXPECT_TRUE(gray->IsSelected(9, 3));
  EXPECT_FALSE(gray->IsSelected(3, 1));
  EXPECT_FALSE(gray->IsSelected(10, 3));
}

TEST(Plane, RefusesSizesThatDoNotFit) {
  EXPECT_FALSE(Plane::ByteCount(32, 0xFFFFFFFF, 0xFFFFFFFF).has_value());
  EXPECT_FALSE(Plane::ByteCount(12, 4, 4).has_value());
  EXPECT_EQ(Plane::ByteCount(16, 3840, 2160), 3840ull * 2160 * 2);
  Plane plane;
  EXPECT_FALSE(plane.Allocate(32, 0xFFFFFFFF, 0xFFFFFFFF));
  EXPECT_TRUE(plane.empty());
  // Far beyond this machine's memory but not overflowing: a refused
  // allocation, not a crash.
  EXPECT_FALSE(plane.Allocate(32, 0x7FFFFFFF, 0x7FFFFFFF));
  // 1 TiB: addressable, but beyond what the system has left.
  EXPECT_FALSE(plane.Allocate(8, 1u << 20, 1u << 20));
  EXPECT_TRUE(plane.empty());
}

}  // namespace
}  // namespace korvanel
