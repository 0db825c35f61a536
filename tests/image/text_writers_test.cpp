// Exact contents of the text, hex-viewer and C-array saves.
#include <gtest/gtest.h>

#include <cstdio>

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"
#include "image/number_text.h"
#include "image/save_request.h"
#include "support/image_builders.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

std::unique_ptr<CImageGray> GrayRow(uint32_t bits, const std::vector<uint32_t>& values) {
  return test::MakeRowImage<CImageGray>(bits, values);
}

std::string SaveText(IImageContainer& image, SaveMode mode, SavePacking packing, const Rect& area,
                     bool big_endian = false) {
  test::TempDir dir;
  SaveRequest request;
  request.path = dir.File("out.txt");
  request.mode = mode;
  request.packing = packing;
  request.area = area;
  request.big_endian = big_endian;
  std::string error;
  request.error = &error;
  EXPECT_TRUE(image.Save(request)) << error;
  return test::ReadWholeFile(dir / "out.txt");
}

std::string HexHeader(int digits) {
  std::string header = " ofs hex  ";
  for (int i = 0; i < 16; ++i) {
    char value[16];
    std::snprintf(value, sizeof(value), "%0*X ", digits, i);
    header += value;
  }
  return header + "\n\n";
}

TEST(NumberText, MatchesPrintf) {
  const uint64_t values[] = {0, 1, 9, 10, 99, 255, 4095, 65535, 99999999, 100000000, 0xFFFFFFFFu};
  for (uint64_t v : values) {
    for (uint32_t width : {1u, 2u, 4u, 8u}) {
      char want[40];
      std::string got;
      std::snprintf(want, sizeof(want), "%0*llu", static_cast<int>(width),
                    static_cast<unsigned long long>(v));
      AppendDecimal(got, v, width);
      EXPECT_EQ(got, want);
      got.clear();
      std::snprintf(want, sizeof(want), "%0*llX", static_cast<int>(width),
                    static_cast<unsigned long long>(v));
      AppendHex(got, v, width);
      EXPECT_EQ(got, want);
    }
  }
}

TEST(NumberText, CounterCarriesLikeTheNumbers) {
  const struct {
    uint64_t start;
    uint32_t width;
  } cases[] = {{0, 8}, {9, 1}, {99999998, 8}, {99999999, 8}, {0xFFFFFFFE, 1}, {1234, 2}};
  for (const auto& c : cases) {
    DecimalCounter counter(c.start, c.width);
    for (uint64_t v = c.start; v < c.start + 3; ++v) {
      char got[40];
      char want[40];
      *counter.Write(got) = 0;
      std::snprintf(want, sizeof(want), "%0*llu", static_cast<int>(c.width),
                    static_cast<unsigned long long>(v));
      EXPECT_STREQ(got, want);
      counter.Increment();
    }
  }
}

TEST(TextSave, GreyWholeImageAndArea) {
  auto image = test::MakeImage<CImageGray>(16, 3, 2);  // y*100 + x
  EXPECT_EQ(SaveText(*image, SaveMode::Text, SavePacking::Original, Rect{0, 0, 2, 1}),
            "Image Y8: <0,0> .. <2,1> : 3x2 (6 pixels)\n\n"
            "ofs: 00000000 <0,0> = 0\n"
            "ofs: 00000001 <1,0> = 1\n"
            "ofs: 00000002 <2,0> = 2\n"
            "ofs: 00000003 <0,1> = 100\n"
            "ofs: 00000004 <1,1> = 101\n"
            "ofs: 00000005 <2,1> = 102\n");
  EXPECT_EQ(SaveText(*image, SaveMode::Text, SavePacking::Planar, Rect{1, 1, 2, 1}),
            "Image Y8: <1,1> .. <2,1> : 2x1 (2 pixels)\n\n"
            "ofs: 00000004 <1,1> = 101\n"
            "ofs: 00000005 <2,1> = 102\n");
}

TEST(TextSave, ThreeComponentsInterleavedAndPlanar) {
  auto rgb = test::MakeImage<CImageRgb>(8, 2, 1);  // R x, G 1000+x -> 232+x, B 2000+x -> 208+x
  EXPECT_EQ(SaveText(*rgb, SaveMode::Text, SavePacking::Interleave, Rect{0, 0, 1, 0}),
            "Image RGB(RGB): <0,0> .. <1,0> : 2x1 (2 pixels)\n"
            "ofs: 00000000 <0,0> = 0,232,208\n"
            "ofs: 00000001 <1,0> = 1,233,209\n");
  auto yuv = test::MakeImage<CImageYuv444>(8, 2, 1);
  EXPECT_EQ(SaveText(*yuv, SaveMode::Text, SavePacking::Planar, Rect{1, 0, 1, 0}),
            "Image YUV(YUV): <1,0> .. <1,0> : 1x1 (1 pixels)\n"
            "\nY:\n\n"
            "ofs: 00000001 <1,0> = 1\n"
            "\nU:\n"
            "ofs: 00000001 <1,0> = 233\n"
            "\nV:\n"
            "ofs: 00000001 <1,0> = 209\n");
}

TEST(TextSave, RgbKeepsTheLetterOrderOfItsFile) {
  CImageRgb image;
  std::vector<uint8_t> bytes = {1, 2, 3};  // B G R
  ASSERT_TRUE(image.Load(bytes.data(), 3, 1, 1, "B G R", 8));
  EXPECT_EQ(SaveText(image, SaveMode::Text, SavePacking::Original, Rect{0, 0, 0, 0}),
            "Image RGB(BGR): <0,0> .. <0,0> : 1x1 (1 pixels)\n"
            "\nB:\n\nofs: 00000000 <0,0> = 1\n"
            "\nG:\nofs: 00000000 <0,0> = 2\n"
            "\nR:\nofs: 00000000 <0,0> = 3\n");
}

TEST(HexSave, TwentyValuesTakeTwoLines) {
  std::vector<uint32_t> values;
  for (uint32_t x = 0; x < 20; ++x) values.push_back(0x10 + x);
  auto image = GrayRow(8, values);
  EXPECT_EQ(SaveText(*image, SaveMode::HexDump, SavePacking::Original, Rect{0, 0, 19, 0}),
            HexHeader(2) +
                "00000000  10 11 12 13 14 15 16 17 18 19 1A 1B 1C 1D 1E 1F \n"
                "00000010  20 21 22 23 \n");
  // Rows of an area start at their own sample offset.
  auto two_rows = test::MakeImage<CImageGray>(8, 20, 2);
  EXPECT_EQ(SaveText(*two_rows, SaveMode::HexDump, SavePacking::Original, Rect{2, 0, 3, 1}),
            HexHeader(2) + "00000002  02 03 \n00000016  66 67 \n");
}

TEST(HexSave, WiderSamplesAndBigEndian) {
  auto image = GrayRow(16, {0x1234, 0xABCD});
  EXPECT_EQ(SaveText(*image, SaveMode::HexDump, SavePacking::Original, Rect{0, 0, 1, 0}),
            HexHeader(4) + "00000000  1234 ABCD \n");
  EXPECT_EQ(SaveText(*image, SaveMode::HexDump, SavePacking::Planar, Rect{0, 0, 1, 0}, true),
            HexHeader(4) + "00000000  3412 CDAB \n");
  auto wide = GrayRow(32, {0xDEADBEEF});
  EXPECT_EQ(SaveText(*wide, SaveMode::HexDump, SavePacking::Original, Rect{0, 0, 0, 0}),
            HexHeader(8) + "00000000  DEADBEEF \n");
}

TEST(HexSave, ThreeComponentsRepeatTheDumpPerComponent) {
  auto rgb = test::MakeImage<CImageRgb>(8, 2, 1);
  EXPECT_EQ(SaveText(*rgb, SaveMode::HexDump, SavePacking::Planar, Rect{0, 0, 1, 0}),
            "\nR:\n\n" + HexHeader(2) + "00000000  00 01 \n" +
            "\nG:\n" + HexHeader(2) + "00000000  E8 E9 \n" +
            "\nB:\n" + HexHeader(2) + "00000000  D0 D1 \n");
  EXPECT_EQ(SaveText(*rgb, SaveMode::HexDump, SavePacking::Interleave, Rect{1, 0, 1, 0}),
            HexHeader(2) + "00000003  01 E9 D1 \n");
}

TEST(CArraySave, ThreeGreyValues) {
  auto image = GrayRow(8, {1, 2, 3});
  EXPECT_EQ(SaveText(*image, SaveMode::CArray, SavePacking::Original, Rect{0, 0, 2, 0}),
            "const unsigned char rawY[3] = {\n\t0x01, 0x02, 0x03\n};\t// 3 bytes\n");
}

TEST(CArraySave, SixteenValuesALineAndWiderTypes) {
  std::vector<uint32_t> values;
  for (uint32_t x = 0; x < 17; ++x) values.push_back(x);
  auto image = GrayRow(16, values);
  EXPECT_EQ(SaveText(*image, SaveMode::CArray, SavePacking::Original, Rect{0, 0, 16, 0}),
            "const unsigned short rawY[17] = {\n\t0x0000, 0x0001, 0x0002, 0x0003, 0x0004, 0x0005, "
            "0x0006, 0x0007, 0x0008, 0x0009, 0x000A, 0x000B, 0x000C, 0x000D, 0x000E, 0x000F, "
            "\n\t0x0010\n};\t// 34 bytes\n");
  auto wide = GrayRow(32, {0x01020304});
  EXPECT_EQ(SaveText(*wide, SaveMode::CArray, SavePacking::Planar, Rect{0, 0, 0, 0}, true),
            "const unsigned int rawY[1] = {\n\t0x04030201\n};\t// 4 bytes\n");
}

TEST(CArraySave, ThreeComponentArrays) {
  auto rgb = test::MakeImage<CImageRgb>(8, 1, 1);
  EXPECT_EQ(SaveText(*rgb, SaveMode::CArray, SavePacking::Planar, Rect{0, 0, 0, 0}),
            "const unsigned char rawR[1] = {\n\t0x00\n};\t// 1 bytes\n\n"
            "const unsigned char rawG[1] = {\n\t0xE8\n};\t// 1 bytes\n\n"
            "const unsigned char rawB[1] = {\n\t0xD0\n};\t// 1 bytes\n");
  EXPECT_EQ(SaveText(*rgb, SaveMode::CArray, SavePacking::Interleave, Rect{0, 0, 0, 0}),
            "const unsigned char rawRGB[3] = {\n\t0x00, 0xE8, 0xD0\n};\t// 3 bytes\n");

  CImageYuv420 yuv;
  yuv.SetPacking(Packing::PlanarInterleave);
  ASSERT_TRUE(yuv.CheckLayout("YYYYUV"));
  std::vector<uint8_t> bytes = {1, 2, 3, 4, 5, 6, 7, 8, 0xA, 0xB, 0xC, 0xD};
  ASSERT_TRUE(yuv.Load(bytes.data(), bytes.size(), 4, 2, "YYYYUV", 8));
  EXPECT_EQ(SaveText(yuv, SaveMode::CArray, SavePacking::Original, Rect{0, 0, 3, 1}),
            "const unsigned char rawY[8] = {\n\t0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08"
            "\n};\t// 8 bytes\n"
            "\nconst unsigned char rawUV[4] = {\n\t0x0A, 0x0B, 0x0C, 0x0D\n};\t// 4 bytes\n");
}

}  // namespace
}  // namespace korvanel
