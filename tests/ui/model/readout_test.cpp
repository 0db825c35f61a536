#include "ui/model/readout.h"

#include <gtest/gtest.h>

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"
#include "support/image_builders.h"
#include "ui/model/pixel_mapping.h"

namespace korvanel {
namespace {

// MakeImage fills component c at (x, y) with c*1000 + y*100 + x.
TEST(ReadoutTest, LinesForEachKindInDecimalAndHex) {
  auto gray = test::MakeImage<CImageGray>(16, 8, 4);
  auto rgb = test::MakeImage<CImageRgb>(16, 8, 4);
  auto yuv = test::MakeImage<CImageYuv444>(16, 8, 4);
  const PixelSample dark{{}, 1, 2, 3};
  const struct {
    const IImageContainer* image;
    bool hex;
    const char* line;
  } cases[] = {
      {gray.get(), false, "[1] <~3,2~> Y: <~203~> (RGB-8: <1,2,3>)"},
      {gray.get(), true, "[1] <~3,2~> Y: <0x~CB~> (RGB-8: <0x1,0x2,0x3>)"},
      {rgb.get(), false, "[1] <~3,2~> RGB: <~203,1203,2203~> (RGB-8: <1,2,3>)"},
      {rgb.get(), true, "[1] <~3,2~> RGB: <0x~CB~,0x~4B3~,0x~89B~> (RGB-8: <0x1,0x2,0x3>)"},
      {yuv.get(), false, "[1] <~3,2~> YUV: <~203,1203,2203~> (RGB-8: <1,2,3>)"},
      {yuv.get(), true, "[1] <~3,2~> YUV: <0x~CB~,0x~4B3~,0x~89B~> (RGB-8: <0x1,0x2,0x3>)"},
  };
  for (const auto& c : cases) {
    std::optional<PixelSample> sample = SamplePixel(*c.image, {3, 2});
    ASSERT_TRUE(sample.has_value());
    sample->r = dark.r;
    sample->g = dark.g;
    sample->b = dark.b;
    const ReadoutFormat format{c.image->ComponentCount() == 1, c.hex};
    EXPECT_EQ(ReadoutLine("1", ComponentNames(*c.image), {3, 2}, *sample, format), c.line);
  }
}

TEST(ReadoutTest, SampleTakesTheRenditionColourAndRefusesOutsidePixels) {
  auto gray = test::MakeGrayImage(8, 4, 2, [](uint32_t x, uint32_t) { return 40 * x; });
  gray->BuildDisplay();
  const std::optional<PixelSample> sample = SamplePixel(*gray, {2, 1});
  ASSERT_TRUE(sample.has_value());
  EXPECT_EQ(sample->values[0], 80u);
  EXPECT_EQ((std::array<int, 3>{sample->r, sample->g, sample->b}), (std::array<int, 3>{80, 80, 80}));
  EXPECT_FALSE(SamplePixel(*gray, {4, 0}).has_value());
  EXPECT_FALSE(SamplePixel(*gray, {-1, 0}).has_value());
  EXPECT_EQ(OutOfRangeLine("2"), "[2] Out-of-Range");
}

// A 10-bit image in 16-bit words reads its values, shows 1023 as white and
// names its depth in the tab; plain images add nothing.
TEST(ReadoutTest, SignificantBitsShowInColourAndTab) {
  auto gray = test::MakeGrayImage(16, 2, 1, [](uint32_t x, uint32_t) { return x == 0 ? 1023 : 512; });
  EXPECT_EQ(SignificantBitsTag(*gray), "");
  gray->SetRawLayout({BitAlign::Lsb, 10});
  gray->BuildDisplay();
  const std::optional<PixelSample> sample = SamplePixel(*gray, {0, 0});
  ASSERT_TRUE(sample.has_value());
  EXPECT_EQ(sample->values[0], 1023u);
  EXPECT_EQ((std::array<int, 3>{sample->r, sample->g, sample->b}), (std::array<int, 3>{255, 255, 255}));
  EXPECT_EQ(SignificantBitsTag(*gray), " (10-bit)");
}

TEST(ReadoutTest, StatusPrefixes) {
  EXPECT_EQ(RoiPrefix(Rect{20, 30, 22, 40}), "ROI: 20,30..22,40 (3x11) | ");
  EXPECT_EQ(PendingRoiPrefix({20, 30}, {10, 30}), "ROI: 20,30..?,? (11x1) | ");
  EXPECT_EQ(PendingRoiPrefix({20, 30}, {25, 35}), "ROI: 20,30..?,? (6x6) | ");
  EXPECT_EQ(CursorPrefix({639, 0}), "XY <639,0>: ");
}

TEST(ReadoutTest, DirectiveLengthAndAngleCountUpwardsAsPositive) {
  const struct {
    PixelPoint cursor;
    const char* text;
  } cases[] = {
      {{10, 10}, "~|L|=0.00 ; Deg=0.00~"},
      {{13, 6}, "~|L|=5.00 ; Deg=53.13~"},    // up and right
      {{13, 14}, "~|L|=5.00 ; Deg=-53.13~"},  // rows grow downwards
      {{0, 10}, "~|L|=10.00 ; Deg=180.00~"},
  };
  for (const auto& c : cases) EXPECT_EQ(DirectiveText({10, 10}, c.cursor), c.text);
}

TEST(ReadoutTest, CopyTextFollowsBaseAndOffsetAndParsesBack) {
  const PixelSample grey{{255, 255, 255}, 0, 0, 0};
  const PixelSample rgb{{1, 128, 4095}, 0, 0, 0};
  const struct {
    PixelSample sample;
    ReadoutFormat format;
    std::optional<uint64_t> offset;
    const char* text;
    const char* value;
  } cases[] = {
      {grey, {true, false}, std::nullopt, "<10,20> =<255>", "255"},
      {grey, {true, true}, std::nullopt, "<10,20> =<0xFF>", "0xFF"},
      {rgb, {false, false}, std::nullopt, "<10,20> =<1,128,4095>", "1,128,4095"},
      {rgb, {false, true}, std::nullopt, "<10,20> =<0x1,0x80,0xFFF>", "0x1,0x80,0xFFF"},
      {grey, {true, false}, 1290, "[1290]<10,20> =<255>", "255"},
      {rgb, {false, true}, 1290, "[0x50A] <10,20> =<0x1,0x80,0xFFF>", "0x1,0x80,0xFFF"},
  };
  for (const auto& c : cases) {
    const std::string text = CopyPixelText({10, 20}, c.sample, c.format, c.offset);
    EXPECT_EQ(text, c.text);
    const std::optional<CopiedPixel> parsed = ParseCopiedPixel(text + "\n");
    ASSERT_TRUE(parsed.has_value()) << text;
    EXPECT_EQ(parsed->pixel, (PixelPoint{10, 20}));
    EXPECT_EQ(parsed->value, c.value);
  }
  EXPECT_EQ(CopySizeText(640, 480), "640x480");
}

TEST(ReadoutTest, TextsThatAreNoPixelCopyAreRefused) {
  for (const char* text : {"", "640x480", "hello", "<1,2>", "<1,2> =", "<1,2> =<>", "<a,2> =<5>",
                           "<-1,2> =<5>", "<1,2> =<5> trailing", "<1 2> =<5>",
                           "<99999999999999999999,1> =<5>"}) {
    EXPECT_FALSE(ParseCopiedPixel(text).has_value()) << text;
  }
}

TEST(PixelMappingTest, ReplicatedBlocksFollowTheScrollOffset) {
  ImageView view;
  view.size = {100, 50};
  view.zf = 4;
  view.picture = {10, 20, 209, 219};  // 200 x 200 of a 400 x 200 picture
  view.offset = {-40, 0};
  EXPECT_EQ(ScreenToPixel(view, {10, 20}), (PixelPoint{10, 0}));
  EXPECT_EQ(ScreenToPixel(view, {13, 23}), (PixelPoint{10, 0}));
  EXPECT_EQ(ScreenToPixel(view, {14, 24}), (PixelPoint{11, 1}));
  EXPECT_FALSE(ScreenToPixel(view, {9, 20}).has_value());
  EXPECT_FALSE(ScreenToPixel(view, {10, 220}).has_value());
  EXPECT_EQ(PixelBlock(view, {11, 1}), (ScreenRect{14, 24, 17, 27}));
  EXPECT_EQ(PixelSpan(view, {10, 0, 12, 1}), (ScreenRect{10, 20, 21, 27}));
}

TEST(PixelMappingTest, BelowOneByProportionClampedToTheImage) {
  ImageView view;
  view.size = {640, 480};
  view.zf = 0.5;
  view.picture = {100, 50, 419, 289};  // 320 x 240
  EXPECT_EQ(ScreenToPixel(view, {100, 50}), (PixelPoint{0, 0}));
  // Rounded: the last screen column is 319/320 of the way, pixel 638.
  EXPECT_EQ(ScreenToPixel(view, {419, 289}), (PixelPoint{638, 478}));
  EXPECT_EQ(ScreenToPixel(view, {260, 170}), (PixelPoint{320, 240}));
  EXPECT_EQ(PixelBlock(view, {320, 240}), (ScreenRect{260, 170, 260, 170}));
  EXPECT_EQ(PixelBlock(view, {639, 479}), (ScreenRect{419, 289, 419, 289}));
}

}  // namespace
}  // namespace korvanel
