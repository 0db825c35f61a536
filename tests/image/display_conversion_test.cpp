#include "image/display_conversion.h"

#include <gtest/gtest.h>

#include "image/color_transform.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"
#include "support/image_builders.h"

namespace korvanel {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr uint32_t kChromaStride = 37;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr uint32_t kChromaStride = 37;
#else
constexpr uint32_t kChromaStride = 1;
#endif
#else
constexpr uint32_t kChromaStride = 1;
#endif

struct ColorCase {
  Rgb8 in;
  Rgb8 out;
};

TEST(ColorTransformArithmetic, YuvToRgbWithTheDefaultMatrix) {
  const ColorCase cases[] = {
      {{128, 128, 128}, {128, 128, 128}},
      {{255, 128, 255}, {255, 164, 255}},  // R clamped from 433
      {{0, 0, 0}, {0, 135, 0}},           // G = 0.34414*128 + 0.71414*128 + 0.5 truncated
      {{0, 128, 0}, {0, 91, 0}},          // R sum -179 clamps to 0
      {{76, 85, 255}, {254, 0, 0}},       // pure red comes back clamped
  };
  for (const ColorCase& c : cases) {
    EXPECT_EQ(YuvToRgb(c.in[0], c.in[1], c.in[2], kDefaultYuvToRgb), c.out)
        << int(c.in[0]) << "," << int(c.in[1]) << "," << int(c.in[2]);
  }
}

TEST(ColorTransformArithmetic, RgbToYuvTruncatesBeforeTheOutputOffset) {
  const ColorCase cases[] = {
      {{255, 255, 255}, {255, 128, 128}},
      {{0, 0, 0}, {0, 128, 128}},
      // V = -20.735 + 0.5 truncates toward zero to -20, then + 128.
      {{0, 0, 255}, {29, 255, 108}},
      // U = -43.03 + 0.5 truncates to -42 (flooring would give 85).
      {{255, 0, 0}, {76, 86, 255}},
  };
  for (const ColorCase& c : cases) {
    EXPECT_EQ(RgbToYuv(c.in[0], c.in[1], c.in[2], kDefaultRgbToYuv), c.out)
        << int(c.in[0]) << "," << int(c.in[1]) << "," << int(c.in[2]);
  }
}

TEST(ColorTransformArithmetic, OffsetsShiftTheInputsOfYuvToRgb) {
  // Only the offset of row 2 is set: it must shift U (input 2), not output G.
  ColorTransform t{{{0, 1, 0, 0}, {0, 0, 0, 10}, {0, 0, 0, 0}}};
  EXPECT_EQ(YuvToRgb(0, 20, 0, t), (Rgb8{30, 0, 0}));
  // A fractional offset is used as its integer part.
  t.m[1][3] = 10.9;
  EXPECT_EQ(YuvToRgb(0, 20, 0, t), (Rgb8{30, 0, 0}));
}

void ExpectRowKernelMatches(const ColorTransform& transform, uint32_t stride) {
  const CYuvToRgbRows kernel(transform);
  uint8_t y[256], u[256], v[256];
  uint32_t out[256];
  for (int i = 0; i < 256; ++i) y[i] = static_cast<uint8_t>(i);
  uint64_t mismatches = 0;
  for (uint32_t uu = 0; uu < 256; uu += stride) {
    for (uint32_t vv = 0; vv < 256; ++vv) {
      std::fill_n(u, 256, static_cast<uint8_t>(uu));
      std::fill_n(v, 256, static_cast<uint8_t>(vv));
      kernel.ConvertRow(y, u, v, out, 256);
      for (int i = 0; i < 256; ++i) {
        const Rgb8 want = YuvToRgb(y[i], u[i], v[i], transform);
        if (out[i] != PackDisplayPixel(want[0], want[1], want[2]) && ++mismatches < 5) {
          ADD_FAILURE() << "Y=" << i << " U=" << uu << " V=" << vv;
        }
      }
    }
  }
  EXPECT_EQ(mismatches, 0u);
}

TEST(ColorTransformArithmetic, RowKernelIsIdenticalForEveryYuvInput) {
  ExpectRowKernelMatches(kDefaultYuvToRgb, kChromaStride);
}

TEST(ColorTransformArithmetic, RowKernelIsIdenticalForAnotherMatrix) {
  const ColorTransform odd{{{1.164, 0.0, 1.596, -16},
                            {1.164, -0.392, -0.813, -128},
                            {1.164, 2.017, 0.0, -128}}};
  ExpectRowKernelMatches(odd, 5);
}

// Pixels as byte triples in memory order.
Rgb8 Bytes(uint32_t pixel) { return {DisplayRed(pixel), DisplayGreen(pixel), DisplayBlue(pixel)}; }

TEST(DisplayRendition, GreyReducesToTheMostSignificantByte) {
  const struct {
    uint32_t bits;
    uint32_t value;
    uint8_t shown;
  } cases[] = {{8, 0xAB, 0xAB}, {16, 0x1234, 0x12}, {16, 0x00FF, 0x00}, {32, 0x89ABCDEF, 0x89}};
  for (const auto& c : cases) {
    CImageGray image;
    std::vector<Plane> planes;
    planes.push_back(test::MakePlane(c.bits, 2, 1, [&](uint32_t, uint32_t) { return c.value; }));
    image.AdoptPlanes(std::move(planes));
    const DisplayRendition* shown = image.BuildDisplay();
    ASSERT_NE(shown, nullptr);
    EXPECT_EQ(Bytes(shown->pixels[1]), (Rgb8{c.shown, c.shown, c.shown})) << c.bits;
    EXPECT_EQ(shown->pixels[1] >> 24, 0u);
  }
}

TEST(DisplayRendition, RgbPutsRedGreenBlueInBytesZeroOneTwo) {
  auto image = test::MakeImage<CImageRgb>(16, 3, 2);  // c*1000 + y*100 + x
  const DisplayRendition* shown = image->BuildDisplay();
  ASSERT_NE(shown, nullptr);
  ASSERT_EQ(shown->pixels.size(), 6u);
  // (2,1): R 102, G 1102 = 0x044E, B 2102 = 0x0836 -> bytes 0x00, 0x04, 0x08.
  EXPECT_EQ(Bytes(shown->pixels[5]), (Rgb8{0x00, 0x04, 0x08}));
  uint32_t color = 0;
  ASSERT_TRUE(image->GetDisplayedValue(2, 1, color));
  EXPECT_EQ(color, 0x00080400u);
  EXPECT_FALSE(image->GetDisplayedValue(3, 1, color));
  EXPECT_FALSE(image->GetDisplayedValue(0, -1, color));
}

TEST(DisplayRendition, YuvGoesThroughTheTransformInForce) {
  auto image = test::MakeImage<CImageYuv420>(8, 4, 2);
  std::vector<Plane> planes;
  planes.push_back(test::MakePlane(8, 4, 2, [](uint32_t x, uint32_t y) { return 40 * x + 90 * y; }));
  planes.push_back(test::MakePlane(8, 4, 2, [](uint32_t x, uint32_t) { return 60 * x; }));
  planes.push_back(test::MakePlane(8, 4, 2, [](uint32_t, uint32_t y) { return 200 - 150 * y; }));
  image->AdoptPlanes(std::move(planes));
  const DisplayRendition* shown = image->BuildDisplay();
  ASSERT_NE(shown, nullptr);
  for (uint32_t y = 0; y < 2; ++y) {
    for (uint32_t x = 0; x < 4; ++x) {
      const Rgb8 want = YuvToRgb(static_cast<uint8_t>(40 * x + 90 * y), static_cast<uint8_t>(60 * x),
                                 static_cast<uint8_t>(200 - 150 * y), kDefaultYuvToRgb);
      EXPECT_EQ(Bytes(shown->pixels[y * 4 + x]), want) << x << "," << y;
    }
  }
  // A replaced transform shows after a refresh, not before.
  const ColorTransform saved = g_yuv_to_rgb;
  g_yuv_to_rgb = ColorTransform{{{0, 0, 1, 0}, {0, 0, 1, 0}, {0, 0, 1, 0}}};
  EXPECT_EQ(image->BuildDisplay(), shown);
  image->Refresh();
  const DisplayRendition* again = image->BuildDisplay();
  g_yuv_to_rgb = saved;
  ASSERT_NE(again, nullptr);
  EXPECT_EQ(Bytes(again->pixels[4]), (Rgb8{50, 50, 50}));
}

TEST(DisplayRendition, SixteenBitYuvIsReducedBeforeConversion) {
  CImageYuv444 image;
  std::vector<Plane> planes;
  planes.push_back(test::MakePlane(16, 1, 1, [](uint32_t, uint32_t) { return 0x80FF; }));
  planes.push_back(test::MakePlane(16, 1, 1, [](uint32_t, uint32_t) { return 0x80FF; }));
  planes.push_back(test::MakePlane(16, 1, 1, [](uint32_t, uint32_t) { return 0xFF00; }));
  image.AdoptPlanes(std::move(planes));
  const DisplayRendition* shown = image.BuildDisplay();
  ASSERT_NE(shown, nullptr);
  EXPECT_EQ(Bytes(shown->pixels[0]), YuvToRgb(0x80, 0x80, 0xFF, kDefaultYuvToRgb));
}

}  // namespace
}  // namespace korvanel
