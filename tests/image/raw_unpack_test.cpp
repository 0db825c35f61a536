// Loads small raw images of every packing, depth and byte order. Input bytes
// are the sample numbers 0, 1, 2, ... in file order; the expected planes are
// written out by hand for 8 bits and widened for 16 and 32 bits, so the test
// never borrows the unpacker's own arithmetic.
#include <gtest/gtest.h>

#include <array>
#include <numeric>

#include "image/format_parser.h"
#include "image/image_factory.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"
#include "support/collecting_sink.h"

namespace korvanel {
namespace {

using Samples = std::vector<uint32_t>;

struct UnpackCase {
  const char* expression;  // 8-bit form; the depth is substituted
  uint32_t width, height;
  uint32_t file_samples;
  Samples c0, c1, c2;  // Y,U,V or R,G,B or grey
  const char* matched;  // YUV class line, "" for grey and RGB
  const char* label8;
};

void PrintTo(const UnpackCase& c, std::ostream* os) { *os << c.expression; }

const UnpackCase kCases[] = {
    {"P,Y", 3, 2, 6, {0, 1, 2, 3, 4, 5}, {}, {}, "", "Y8"},
    {"I,RGB", 2, 1, 6, {0, 3}, {1, 4}, {2, 5}, "", "RGBx8"},
    {"I,BGR", 2, 1, 6, {2, 5}, {1, 4}, {0, 3}, "", "RGBx8"},
    {"I,GRB", 2, 1, 6, {1, 4}, {0, 3}, {2, 5}, "", "RGBx8"},
    {"P,B,G,R", 2, 1, 6, {4, 5}, {2, 3}, {0, 1}, "", "RGBx8"},
    {"P,R,G,B", 2, 2, 12, {0, 1, 2, 3}, {4, 5, 6, 7}, {8, 9, 10, 11}, "", "RGBx8"},
    {"I,YUV", 2, 1, 6, {0, 3}, {1, 4}, {2, 5}, "Matched YUV-444", "YUV444 24bpp"},
    {"I,YUYV", 4, 1, 8, {0, 2, 4, 6}, {1, 1, 5, 5}, {3, 3, 7, 7}, "Matched YUV-422", "YUV422 16bpp"},
    {"I,UYVY", 4, 1, 8, {1, 3, 5, 7}, {0, 0, 4, 4}, {2, 2, 6, 6}, "Matched YUV-422", "YUV422 16bpp"},
    {"I,YVYU", 2, 2, 8, {0, 2, 4, 6}, {3, 3, 7, 7}, {1, 1, 5, 5}, "Matched YUV-422", "YUV422 16bpp"},
    {"I,YYYYUV", 4, 2, 12, {0, 1, 2, 3, 6, 7, 8, 9}, {4, 4, 4, 4, 10, 10, 10, 10},
     {5, 5, 5, 5, 11, 11, 11, 11}, "Matched YUV-420 (SP)", "YUV420 12bpp"},
    {"I,YYUUVV", 2, 1, 6, {0, 1}, {2, 3}, {4, 5}, "Matched YUV-444", "YUV444 24bpp"},
    {"I,YYYYUUV", 4, 1, 7, {0, 1, 2, 3}, {4, 4, 5, 5}, {6, 6, 6, 6}, "Matched YUV (user-defined)",
     "YUVx8 (I)"},
    {"P,Y,U,V", 2, 1, 6, {0, 1}, {2, 3}, {4, 5}, "Matched YUV-444", "YUV444 24bpp"},
    {"P,V,U,Y", 2, 1, 6, {4, 5}, {2, 3}, {0, 1}, "Matched YUV-444", "YUV444 24bpp"},
    {"P,YY,U,V", 4, 2, 16, {0, 1, 2, 3, 4, 5, 6, 7}, {8, 8, 9, 9, 10, 10, 11, 11},
     {12, 12, 13, 13, 14, 14, 15, 15}, "Matched YUV-422", "YUV422 16bpp"},
    // Planar chroma repeats along the raster only, not down into the next row.
    {"P,YYYY,U,V", 4, 2, 12, {0, 1, 2, 3, 4, 5, 6, 7}, {8, 8, 8, 8, 9, 9, 9, 9},
     {10, 10, 10, 10, 11, 11, 11, 11}, "Matched YUV-420 (SP)", "YUV420 12bpp"},
    {"P,YYYY,UU,V", 4, 1, 7, {0, 1, 2, 3}, {4, 4, 5, 5}, {6, 6, 6, 6}, "Matched YUV (user-defined)",
     "YUVx8 (P)"},
    // The semi-planar form covers 2x2 cells: the first row is copied down.
    {"PI,YYYYUV", 4, 2, 12, {0, 1, 2, 3, 4, 5, 6, 7}, {8, 8, 10, 10, 8, 8, 10, 10},
     {9, 9, 11, 11, 9, 9, 11, 11}, "Matched YUV-420 (SP)", "YUV420 12bpp"},
    {"PI,YYYYVU", 4, 4, 24, {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
     {17, 17, 19, 19, 17, 17, 19, 19, 21, 21, 23, 23, 21, 21, 23, 23},
     {16, 16, 18, 18, 16, 16, 18, 18, 20, 20, 22, 22, 20, 20, 22, 22}, "Matched YUV-420 (SP)",
     "YUV420 12bpp"},
};

struct Depth {
  int32_t bpp;
  uint32_t (*widen)(uint32_t);
};

// Widened values keep every byte distinct, so a missing or extra swap shows.
uint32_t Widen8(uint32_t v) { return v; }
uint32_t Widen16(uint32_t v) { return (v << 8) | (0xA0 + v); }
uint32_t Widen32(uint32_t v) { return (v << 24) | ((v + 0x40) << 16) | ((v + 0x80) << 8) | (v + 0xC0 - 0x40); }

const Depth kDepths[] = {{8, Widen8},   {-8, Widen8},  {16, Widen16},
                         {-16, Widen16}, {32, Widen32}, {-32, Widen32}};

std::vector<uint8_t> FileBytes(uint32_t samples, const Depth& depth) {
  const uint32_t bytes = static_cast<uint32_t>(std::abs(depth.bpp)) / 8;
  std::vector<uint8_t> out;
  for (uint32_t k = 0; k < samples; ++k) {
    const uint32_t value = depth.widen(k);
    for (uint32_t i = 0; i < bytes; ++i) {
      const uint32_t shift = depth.bpp < 0 ? 8 * (bytes - 1 - i) : 8 * i;
      out.push_back(static_cast<uint8_t>(value >> shift));
    }
  }
  return out;
}

FormatExpression Parse(const std::string& expression) {
  test::CollectingSink log;
  const std::optional<FormatExpression> format = ParseFormatExpression(expression, 0, log);
  EXPECT_TRUE(format) << expression;
  return format.value_or(FormatExpression{});
}

Samples PlaneValues(const IImageContainer& image, uint32_t component) {
  uint32_t w = 0, h = 0;
  image.GetSize(w, h);
  Samples out;
  for (uint32_t y = 0; y < h; ++y) {
    for (uint32_t x = 0; x < w; ++x) {
      std::array<uint32_t, 3> v{};
      image.GetSampleValues(x, y, v);
      out.push_back(v[component]);
    }
  }
  return out;
}

Samples Widened(const Samples& s, const Depth& depth) {
  Samples out;
  for (uint32_t v : s) out.push_back(depth.widen(v));
  return out;
}

class Unpack : public ::testing::TestWithParam<UnpackCase> {};

TEST_P(Unpack, EveryDepthAndByteOrder) {
  const UnpackCase& c = GetParam();
  for (const Depth& depth : kDepths) {
    SCOPED_TRACE(std::string(c.expression) + "," + std::to_string(depth.bpp));
    const FormatExpression format = Parse(std::string(c.expression) + "," + std::to_string(depth.bpp));
    std::vector<uint8_t> bytes = FileBytes(c.file_samples, depth);
    test::CollectingSink log;
    auto image = LoadWithFormat(format, bytes.data(), bytes.size(), c.width, c.height, log);
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(log.lines, std::string(c.matched).empty() ? std::vector<std::string>{}
                                                        : std::vector<std::string>{c.matched});
    EXPECT_EQ(image->GetRawByteSize(), bytes.size());
    EXPECT_EQ(image->GetBitsPerComponent(), static_cast<uint32_t>(std::abs(depth.bpp)));
    EXPECT_EQ(image->BigEndian(), depth.bpp < -8);
    EXPECT_EQ(PlaneValues(*image, 0), Widened(c.c0, depth));
    if (!c.c1.empty()) {
      EXPECT_EQ(PlaneValues(*image, 1), Widened(c.c1, depth));
      EXPECT_EQ(PlaneValues(*image, 2), Widened(c.c2, depth));
    }
    if (depth.bpp == 8) {
      EXPECT_EQ(image->FormatLabel(), c.label8);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EveryPacking, Unpack, ::testing::ValuesIn(kCases));

TEST_P(Unpack, RefusesOneByteMoreOrLessAndKeepsTheBytes) {
  const UnpackCase& c = GetParam();
  for (int32_t bpp : {8, -16, -32}) {
    const Depth& depth = *std::find_if(std::begin(kDepths), std::end(kDepths),
                                       [&](const Depth& d) { return d.bpp == bpp; });
    const FormatExpression format = Parse(std::string(c.expression) + "," + std::to_string(bpp));
    std::vector<uint8_t> bytes = FileBytes(c.file_samples, depth);
    bytes.push_back(0x5A);
    const std::vector<uint8_t> before = bytes;
    test::CollectingSink log;
    EXPECT_EQ(LoadWithFormat(format, bytes.data(), bytes.size(), c.width, c.height, log), nullptr);
    EXPECT_EQ(bytes, before) << "a refused load must not swap the caller's bytes";
    EXPECT_EQ(LoadWithFormat(format, bytes.data(), bytes.size() - 2, c.width, c.height, log),
              nullptr);
    EXPECT_TRUE(log.lines.empty());
  }
}

TEST(UnpackRefusals, LayoutsNoClassCanLoad) {
  struct Row {
    const char* expression;
    uint32_t width, height, bytes;
  };
  const Row rows[] = {
      {"I,YUVA,8", 2, 1, 8},        // a letter outside Y, U, V
      {"I,YYYUV,8", 3, 1, 5},       // a count of 3
      {"P,YY,U,U,8", 2, 1, 4},      // a component twice, V missing
      {"P,YY,UU,V,8", 2, 1, 4},     // token length differs from the counts
      {"PI,YYUV,8", 4, 2, 16},      // the semi-planar form knows only YYYYUV/YYYYVU
      {"PI,YYYYUV,8", 3, 2, 9},     // odd width: no whole 2x2 cells
      {"PI,YYYYUV,8", 4, 3, 18},    // odd height
      {"I,RRB,8", 2, 1, 6},         // a colour twice
      {"P,RG,G,B,8", 2, 1, 6},      // a planar RGB token of two letters
  };
  for (const Row& row : rows) {
    test::CollectingSink log;
    const FormatExpression format = Parse(row.expression);
    std::vector<uint8_t> bytes(row.bytes, 1);
    EXPECT_EQ(LoadWithFormat(format, bytes.data(), bytes.size(), row.width, row.height, log),
              nullptr)
        << row.expression;
  }
}

TEST(UnpackRefusals, GreyTakesOnlyTheLayoutY) {
  std::vector<uint8_t> bytes(4, 0);
  CImageGray gray;
  EXPECT_FALSE(gray.Load(bytes.data(), 4, 2, 2, "YY", 8));
  EXPECT_FALSE(gray.Load(bytes.data(), 4, 2, 2, "Y", 12));
  EXPECT_TRUE(gray.Load(bytes.data(), 4, 2, 2, "Y", 8));
}

TEST(UnpackSizes, ExactFrameSizes) {
  test::CollectingSink log;
  std::vector<uint8_t> bytes(460801, 0);
  const FormatExpression nv12 = Parse("PI,YYYYUV,8");
  EXPECT_EQ(LoadWithFormat(nv12, bytes.data(), 460801, 640, 480, log), nullptr);
  EXPECT_NE(LoadWithFormat(nv12, bytes.data(), 460800, 640, 480, log), nullptr);
  bytes.resize(1228800);
  const FormatExpression yuyv = Parse("I,YUYV,-16");
  EXPECT_NE(LoadWithFormat(yuyv, bytes.data(), 1228800, 640, 480, log), nullptr);
}

TEST(UnpackSizes, RefusesDimensionsWhoseSizeCannotExist) {
  test::CollectingSink log;
  uint8_t byte = 0;
  for (const char* expression : {"P,Y,32", "I,RGB,32", "I,YUYV,32", "PI,YYYYUV,32"}) {
    const FormatExpression format = Parse(expression);
    // The true size of 0xFFFFFFFF x 0xFFFFFFFF wraps 64 bits; it must never
    // compare equal to a small count.
    for (uint64_t count : {uint64_t{0}, uint64_t{1}, uint64_t{4}}) {
      EXPECT_EQ(LoadWithFormat(format, &byte, count, 0xFFFFFFFF, 0xFFFFFFFF, log), nullptr)
          << expression;
    }
    // An empty request of that size is an allocation that cannot succeed.
    EXPECT_EQ(LoadWithFormat(format, nullptr, 0, 0xFFFFFFFF, 0xFFFFFFFF, log), nullptr) << expression;
  }
}

TEST(UnpackEdges, PixelCountNotAMultipleOfTheGroupStaysInside) {
  // 3 x 1 YUYV: the frame is 3 Y + 1 U + 1 V bytes; the last group is partial.
  const FormatExpression format = Parse("I,YUYV,8");
  std::vector<uint8_t> bytes = {10, 20, 11, 30, 12};
  test::CollectingSink log;
  auto image = LoadWithFormat(format, bytes.data(), bytes.size(), 3, 1, log);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(PlaneValues(*image, 0), (Samples{10, 11, 12}));
  // The third pixel has no chroma sample of its own and repeats the last one.
  EXPECT_EQ(PlaneValues(*image, 1), (Samples{20, 20, 20}));
  EXPECT_EQ(PlaneValues(*image, 2), (Samples{30, 30, 30}));
}

TEST(UnpackEdges, OddPlanarChromaRepeatsItsLastSample) {
  // 3 x 1 planar 4:2:2: Y 3 bytes, U and V one byte each.
  const FormatExpression format = Parse("P,YY,U,V,8");
  std::vector<uint8_t> bytes = {1, 2, 3, 40, 50};
  test::CollectingSink log;
  auto image = LoadWithFormat(format, bytes.data(), bytes.size(), 3, 1, log);
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(PlaneValues(*image, 1), (Samples{40, 40, 40}));
  EXPECT_EQ(PlaneValues(*image, 2), (Samples{50, 50, 50}));
}

TEST(UnpackEdges, EmptyRequestsMakeZeroImagesOfTheLayout) {
  CImageYuv420 yuv;
  yuv.SetPacking(Packing::PlanarInterleave);
  ASSERT_TRUE(yuv.Load(nullptr, 0, 4, 2, "YYYYUV", 16));
  EXPECT_EQ(yuv.GetRawByteSize(), 24u);  // 4 x 2 x 2 bytes x 1.5
  EXPECT_EQ(PlaneValues(yuv, 2), Samples(8, 0));
  CImageRgb rgb;
  ASSERT_TRUE(rgb.Load(nullptr, 0, 3, 3, "RGB", 8));
  EXPECT_EQ(rgb.GetRawByteSize(), 27u);
  CImageGray gray;
  EXPECT_FALSE(gray.Load(nullptr, 4, 2, 2, "Y", 8));  // bytes promised but none given
}

TEST(UnpackEdges, UnalignedSourceBytes) {
  // Pixel data often starts at an odd file offset.
  std::vector<uint8_t> storage(1 + 4 * 3 * 4, 0);
  for (size_t i = 1; i < storage.size(); ++i) storage[i] = static_cast<uint8_t>(i);
  const FormatExpression format = Parse("I,RGB,32");
  test::CollectingSink log;
  auto image = LoadWithFormat(format, storage.data() + 1, storage.size() - 1, 2, 2, log);
  ASSERT_NE(image, nullptr);
  std::array<uint32_t, 3> v{};
  ASSERT_TRUE(image->GetSampleValues(1, 0, v));
  EXPECT_EQ(v[0], 0x100F0E0Du);  // bytes 13..16 of the storage, little endian
}

TEST(UnpackEdges, LargerImageMatchesAPlainReferenceLoop) {
  // 4:2:2 over several chunks of the interleave walk, against a direct loop.
  const uint32_t w = 1000, h = 90;
  std::vector<uint8_t> bytes(size_t{w} * h * 2);
  std::iota(bytes.begin(), bytes.end(), uint8_t{7});
  const std::vector<uint8_t> original = bytes;
  const FormatExpression format = Parse("I,UYVY,8");
  test::CollectingSink log;
  auto image = LoadWithFormat(format, bytes.data(), bytes.size(), w, h, log);
  ASSERT_NE(image, nullptr);
  for (uint32_t y = 0; y < h; y += 7) {
    for (uint32_t x = 0; x < w; ++x) {
      const size_t pair = (size_t{y} * w + x) / 2;
      std::array<uint32_t, 3> v{};
      ASSERT_TRUE(image->GetSampleValues(x, y, v));
      ASSERT_EQ(v[0], original[pair * 4 + 1 + 2 * (x % 2)]) << x << "," << y;
      ASSERT_EQ(v[1], original[pair * 4]);
      ASSERT_EQ(v[2], original[pair * 4 + 2]);
    }
  }
}

}  // namespace
}  // namespace korvanel

namespace korvanel {
namespace {

// An accepted big-endian load leaves the caller's bytes byte-reversed unit by
// unit, whichever class unpacks them (grey swaps while it copies).
TEST(UnpackEdges, AcceptedBigEndianLoadsLeaveTheInputSwapped) {
  struct Case {
    const char* expression;
    uint32_t unit;
    uint32_t components;
  };
  const Case cases[] = {{"P,Y,-16", 2, 1}, {"P,Y,-32", 4, 1}, {"P,R,G,B,-16", 2, 3}, {"I,RGB,-32", 4, 3}};
  const uint32_t w = 7, h = 5;
  for (const Case& c : cases) {
    std::vector<uint8_t> bytes(size_t{w} * h * c.unit * c.components);
    std::iota(bytes.begin(), bytes.end(), uint8_t{1});
    std::vector<uint8_t> swapped = bytes;
    for (size_t i = 0; i < swapped.size(); i += c.unit) std::reverse(swapped.begin() + i, swapped.begin() + i + c.unit);
    test::CollectingSink log;
    auto image = LoadWithFormat(Parse(c.expression), bytes.data(), bytes.size(), w, h, log);
    ASSERT_NE(image, nullptr) << c.expression;
    EXPECT_EQ(bytes, swapped) << c.expression;
    // The first sample holds the file's first unit read big-endian.
    const uint32_t first = c.unit == 2 ? 0x0102u : 0x01020304u;
    EXPECT_EQ(image->GetPlane(0).SampleAt(0, 0), first) << c.expression;
  }
}

}  // namespace
}  // namespace korvanel
