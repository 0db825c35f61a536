#include "ops/convert_operation.h"

#include <gtest/gtest.h>

#include "image/display_conversion.h"
#include "image/format_parser.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"
#include "ops/worker_pool.h"
#include "support/image_builders.h"

namespace korvanel {
namespace {

using test::MakePlane;

FormatExpression Target(const std::string& text) {
  CNullLineSink log;
  const std::optional<FormatExpression> format = ParseFormatExpression(text, 0, log);
  EXPECT_TRUE(format) << text;
  return format.value_or(FormatExpression{});
}

template <typename Image>
std::unique_ptr<Image> Make(uint32_t bits, uint32_t w, uint32_t h,
                            std::array<std::function<uint32_t(uint32_t, uint32_t)>, 3> values) {
  auto image = std::make_unique<Image>();
  std::vector<Plane> planes;
  for (uint32_t c = 0; c < image->ComponentCount(); ++c) planes.push_back(MakePlane(bits, w, h, values[c]));
  EXPECT_TRUE(image->AdoptPlanes(std::move(planes)));
  return image;
}

std::array<uint32_t, 3> At(const IImageContainer& image, uint32_t x, uint32_t y) {
  std::array<uint32_t, 3> v{};
  image.GetSampleValues(x, y, v);
  return v;
}

ConvertRequest Request(const std::string& target) {
  ConvertRequest r;
  r.target = Target(target);
  r.yuv_to_rgb = kDefaultYuvToRgb;
  r.rgb_to_yuv = kDefaultRgbToYuv;
  return r;
}

std::unique_ptr<CImageConcreteBase> Convert(const CImageConcreteBase& source, const ConvertRequest& r,
                                            WorkerPool* pool = nullptr) {
  JobRunner runner(pool);
  ConvertRun run = RunConvert(source, r, runner, nullptr);
  EXPECT_TRUE(run.run.ok);
  return std::move(run.image);
}

TEST(ConvertOperation, YuvToRgbFollowsTheDisplayArithmetic) {
  // A grid of (Y, U, V) through the 8-bit row path, against the display's
  // own per-pixel function.
  auto yuv = Make<CImageYuv444>(8, 32, 32, {[](uint32_t x, uint32_t y) { return (x * 8 + y) & 0xFF; },
                                            [](uint32_t x, uint32_t) { return x * 8; },
                                            [](uint32_t, uint32_t y) { return 255 - y * 8; }});
  yuv->SetLayoutDescription({1, 1, 1}, Packing::Interleave, "YUV");
  auto rgb = Convert(*yuv, Request("I,RGB,8"));
  ASSERT_NE(rgb, nullptr);
  EXPECT_EQ(rgb->FormatLabel(), "RGBx8");
  for (uint32_t y = 0; y < 32; ++y) {
    for (uint32_t x = 0; x < 32; ++x) {
      const auto s = At(*yuv, x, y);
      const Rgb8 expected = YuvToRgb(static_cast<uint8_t>(s[0]), static_cast<uint8_t>(s[1]),
                                     static_cast<uint8_t>(s[2]), kDefaultYuvToRgb);
      ASSERT_EQ(At(*rgb, x, y), (std::array<uint32_t, 3>{expected[0], expected[1], expected[2]})) << x << "," << y;
    }
  }
}

TEST(ConvertOperation, Yuv444ToRgbAndBackWithinOneCodeValue) {
  // Mid-range colours survive the round trip of the default matrices.
  auto yuv = Make<CImageYuv444>(8, 16, 16, {[](uint32_t x, uint32_t) { return 60 + x * 8; },
                                            [](uint32_t, uint32_t y) { return 110 + y * 2; },
                                            [](uint32_t x, uint32_t y) { return 100 + (x + y); }});
  yuv->SetLayoutDescription({1, 1, 1}, Packing::Planar, "Y U V");
  auto rgb = Convert(*yuv, Request("P,R,G,B,8"));
  ASSERT_NE(rgb, nullptr);
  auto back = Convert(*rgb, Request("P,Y,U,V,8"));
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->FormatLabel(), "YUV444 24bpp");
  for (uint32_t y = 0; y < 16; ++y) {
    for (uint32_t x = 0; x < 16; ++x) {
      const auto a = At(*yuv, x, y), b = At(*back, x, y);
      for (int c = 0; c < 3; ++c) {
        EXPECT_LE(std::abs(int(a[c]) - int(b[c])), 1) << x << "," << y << " component " << c;
      }
    }
  }
}

TEST(ConvertOperation, GreyAndDepthChanges) {
  auto rgb = Make<CImageRgb>(8, 2, 1, {[](uint32_t, uint32_t) { return 255; }, [](uint32_t, uint32_t) { return 255; },
                                       [](uint32_t x, uint32_t) { return x * 255; }});
  auto grey = Convert(*rgb, Request("P,Y,16"));
  ASSERT_NE(grey, nullptr);
  EXPECT_EQ(grey->FormatLabel(), "Y16");
  EXPECT_EQ(At(*grey, 1, 0)[0], 255u << 8);  // Y 255, kept in the top byte
  EXPECT_EQ(At(*grey, 0, 0)[0], 226u << 8);  // 0.299*255 + 0.587*255 + 0.5 = 226.4

  // A 16-bit grey image becomes neutral 16-bit YUV: chroma at the centre.
  auto g16 = Make<CImageGray>(16, 1, 1, {[](uint32_t, uint32_t) { return 0x1234; }, {}, {}});
  auto yuv = Convert(*g16, Request("I,YUV,16"));
  ASSERT_NE(yuv, nullptr);
  EXPECT_EQ(At(*yuv, 0, 0), (std::array<uint32_t, 3>{0x1234, 0x8000, 0x8000}));
  auto rgb16 = Convert(*yuv, Request("I,RGB,16"));
  ASSERT_NE(rgb16, nullptr);
  EXPECT_EQ(At(*rgb16, 0, 0), (std::array<uint32_t, 3>{0x1234, 0x1234, 0x1234}));
}

TEST(ConvertOperation, LargerCanvasPlacesOrTilesFromTheOffset) {
  auto grey = Make<CImageGray>(8, 2, 2, {[](uint32_t x, uint32_t y) { return 10 + x + 2 * y; }, {}, {}});
  ConvertRequest r = Request("P,Y,8");
  r.resize = true;
  r.size = {5, 3};
  r.offset = {1, 1};
  auto placed = Convert(*grey, r);
  ASSERT_NE(placed, nullptr);
  EXPECT_EQ(test::PlaneSamples(placed->GetPlane(0)),
            (std::vector<uint32_t>{0, 0, 0, 0, 0, 0, 10, 11, 0, 0, 0, 12, 13, 0, 0}));
  r.tiled = true;
  auto tiled = Convert(*grey, r);
  ASSERT_NE(tiled, nullptr);
  // Tiles start at the offset and repeat both ways.
  EXPECT_EQ(test::PlaneSamples(tiled->GetPlane(0)),
            (std::vector<uint32_t>{13, 12, 13, 12, 13, 11, 10, 11, 10, 11, 13, 12, 13, 12, 13}));
}

TEST(ConvertOperation, SmallerCanvasReadsTheSourceFromTheOffsetAndYuvBlackIsNeutral) {
  auto grey = Make<CImageGray>(8, 4, 4, {[](uint32_t x, uint32_t y) { return x + 10 * y; }, {}, {}});
  ConvertRequest r = Request("PI,YYYYUV,8");
  r.resize = true;
  r.size = {2, 6};  // narrower, taller: a source position; rows past the source are black
  r.offset = {2, 1};
  auto out = Convert(*grey, r);
  ASSERT_NE(out, nullptr);
  EXPECT_EQ(out->FormatLabel(), "YUV420 12bpp");
  EXPECT_EQ(At(*out, 0, 0), (std::array<uint32_t, 3>{12, 128, 128}));
  EXPECT_EQ(At(*out, 1, 2), (std::array<uint32_t, 3>{33, 128, 128}));
  EXPECT_EQ(At(*out, 1, 4), (std::array<uint32_t, 3>{0, 128, 128}));
}

TEST(ConvertOperation, OneWorkerAndManyGiveTheSameImage) {
  auto yuv = Make<CImageYuv422>(8, 123, 77, {[](uint32_t x, uint32_t y) { return (x * 7 + y * 3) & 0xFF; },
                                             [](uint32_t x, uint32_t) { return (x * 5) & 0xFF; },
                                             [](uint32_t, uint32_t y) { return (y * 11) & 0xFF; }});
  yuv->SetLayoutDescription({2, 1, 1}, Packing::Interleave, "YUYV");
  WorkerPool pool(3);
  ConvertRequest r = Request("I,BGR,16");
  auto one = Convert(*yuv, r);
  auto many = Convert(*yuv, r, &pool);
  ASSERT_NE(one, nullptr);
  ASSERT_NE(many, nullptr);
  for (uint32_t y = 0; y < 77; ++y) {
    for (uint32_t x = 0; x < 123; ++x) ASSERT_EQ(At(*one, x, y), At(*many, x, y)) << x << "," << y;
  }
}

}  // namespace
}  // namespace korvanel
