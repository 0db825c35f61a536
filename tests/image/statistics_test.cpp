#include "image/statistics.h"

#include <gtest/gtest.h>

#include <sstream>

#include "image/histogram_result.h"
#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"
#include "image/statistics_request.h"
#include "support/image_builders.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

std::unique_ptr<CImageGray> GrayRow(uint32_t bits, const std::vector<uint32_t>& values) {
  return test::MakeRowImage<CImageGray>(bits, values);
}

std::string Stars(int stars) { return std::string(stars, '*') + std::string(60 - stars, ' '); }

std::string StatisticsText(IImageContainer& image, const Rect& area) {
  test::TempDir dir;
  StatisticsRequest request;
  request.path = dir.File("s.stat.txt");
  request.area = area;
  std::string error;
  request.error = &error;
  EXPECT_TRUE(image.WriteStatistics(request)) << error;
  return test::ReadWholeFile(dir / "s.stat.txt");
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

TEST(StatisticsFile, TinyGreyImageLineByLine) {
  auto image = GrayRow(8, {5, 9, 5, 5});
  const std::vector<std::string> want = {
      "<Luma-8>",
      "  Distribution        = 4",
      "  Bins / Samples      = 2",
      "  Weighted Dist       =    1.50",
      "  Mean                =    6.00",
      "  Variance            =    3.00",
      "  Standard Deviation  =    1.73",
      "  Prob 0.25         =    5",
      "  Prob 0.50         =    5",
      "  Prob 0.75         =    9",
      "  Mode Max 1 =    5 (3)",
      "  Mode Max 2 =    9 (1)",
      "  Mode Min 1 =    9 (1)",
      "  Mode Min 2 =    5 (3)",
      "[0]    5 = 3   |" + Stars(60),
      "[1]    9 = 1   |" + Stars(20),
      "</Luma-8>",
      "<Luma-8> Mode",
      "[0]    5 = 3   |" + Stars(60),
      "[1]    9 = 1   |" + Stars(20),
      "</Luma-8  Mode>",
  };
  EXPECT_EQ(Lines(StatisticsText(*image, Rect{0, 0, 3, 0})), want);
}

TEST(StatisticsFile, OneBinPrintsItsValueEverywhere) {
  auto image = GrayRow(16, {700, 700, 700});
  const std::vector<std::string> lines = Lines(StatisticsText(*image, Rect{0, 0, 2, 0}));
  ASSERT_EQ(lines.size(), 19u);
  EXPECT_EQ(lines[0], "<Luma-16>");
  EXPECT_EQ(lines[7], "  Prob 0.25         =    700");
  EXPECT_EQ(lines[8], "  Prob 0.50         =    700");
  EXPECT_EQ(lines[9], "  Prob 0.75         =    700");
  EXPECT_EQ(lines[11], "  Mode Max 2 =    700 (3)") << "a missing rank repeats the one there is";
  EXPECT_EQ(lines[14], "[0]    700 = 3   |" + Stars(60));
}

TEST(StatisticsFile, RareValuesStillShowOneStarAndIndexesArePadded) {
  std::vector<uint32_t> values(240, 100);  // 240 of 100, then 1 each of 1..10
  for (uint32_t v = 1; v <= 10; ++v) values.push_back(v);
  auto image = GrayRow(8, values);
  const std::vector<std::string> lines =
      Lines(StatisticsText(*image, Rect{0, 0, static_cast<uint32_t>(values.size() - 1), 0}));
  EXPECT_EQ(lines[10], "  Mode Max 1 =  100 (240)");
  EXPECT_EQ(lines[11], "  Mode Max 2 =    1 (1)") << "equal counts: the lower value first";
  EXPECT_EQ(lines[12], "  Mode Min 1 =    1 (1)");
  EXPECT_EQ(lines[13], "  Mode Min 2 =    2 (1)");
  EXPECT_EQ(lines[14], "[00]    1 =   1   |" + Stars(1));
  EXPECT_EQ(lines[24], "[10]  100 = 240   |" + Stars(60));
  EXPECT_EQ(lines[27], "[00]  100 = 240   |" + Stars(60)) << "the count listing starts with the mode";
  EXPECT_EQ(lines[28], "[01]    1 =   1   |" + Stars(1));
}

TEST(StatisticsFile, ThreeComponentNamesAndValueWidths) {
  auto rgb = test::MakeImage<CImageRgb>(16, 1, 1);
  const std::vector<std::string> rgb_lines = Lines(StatisticsText(*rgb, Rect{0, 0, 0, 0}));
  EXPECT_EQ(rgb_lines[0], "<R-16>");
  EXPECT_EQ(rgb_lines[7], "  Prob 0.25         =      0");
  EXPECT_EQ(rgb_lines[19], "<G-16>");  // one bin: 19 lines a component
  EXPECT_EQ(rgb_lines[38], "<B-16>");
  EXPECT_EQ(rgb_lines.back(), "</B-16  Mode>");
  auto yuv = test::MakeImage<CImageYuv444>(8, 1, 1);
  const std::vector<std::string> yuv_lines = Lines(StatisticsText(*yuv, Rect{0, 0, 0, 0}));
  EXPECT_EQ(yuv_lines[19], "<U>");
  auto wide = GrayRow(32, {0xFFFFFFFFu, 7});
  const std::vector<std::string> wide_lines = Lines(StatisticsText(*wide, Rect{0, 0, 1, 0}));
  EXPECT_EQ(wide_lines[0], "<Luma-32>");
  EXPECT_EQ(wide_lines[9], "  Prob 0.75         = 4294967295");
  EXPECT_EQ(wide_lines[14], "[0]          7 = 1   |" + Stars(60));
}

TEST(StatisticsFile, OnlyVisiblePixelsOfTheAreaCount) {
  auto image = test::MakeImage<CImageGray>(8, 4, 2);  // y*100 + x
  // Area (1,0)..(3,1) with pixel (2,1) masked out: values 1,2,3,101,103.
  std::vector<uint32_t> mask = {0xFFu & ~(1u << 6)};
  image->SetSelectionMask(mask);
  const std::vector<std::string> lines = Lines(StatisticsText(*image, Rect{1, 0, 3, 1}));
  EXPECT_EQ(lines[1], "  Distribution        = 5");
  EXPECT_EQ(lines[4], "  Mean                =   42.00");
  image->SetSelectionMask({0});
  const std::vector<std::string> none = Lines(StatisticsText(*image, Rect{0, 0, 3, 1}));
  EXPECT_EQ(none[1], "  Distribution        = 0");
  EXPECT_EQ(none[4], "  Mean                =    0.00");
  EXPECT_EQ(none[14], "</Luma-8>");
}

TEST(StatisticsFile, RefusesAnAreaOutsideTheImageAndAnUnwritablePath) {
  auto image = GrayRow(8, {1, 2});
  test::TempDir dir;
  StatisticsRequest request;
  request.path = dir.File("s.txt");
  request.area = Rect{0, 0, 2, 0};
  EXPECT_FALSE(image->WriteStatistics(request));
  request.area = Rect{0, 0, 1, 0};
  request.path = dir.File("missing/s.txt");
  EXPECT_FALSE(image->WriteStatistics(request));
}

TEST(Quantiles, WalkStopsWhereTheRunningCountExceedsTheFraction) {
  const std::vector<StatisticsBin> bins = {{10, 2}, {20, 2}, {30, 4}};
  EXPECT_EQ(QuantileValue(bins, 8, 0.20), 10u);  // 2 > 1.6
  EXPECT_EQ(QuantileValue(bins, 8, 0.25), 20u);  // 2 > 2 fails, 4 > 2
  EXPECT_EQ(QuantileValue(bins, 8, 0.50), 30u);  // 4 > 4 fails
  EXPECT_EQ(QuantileValue(bins, 8, 1.00), 30u);  // never exceeded: the last bin
  EXPECT_EQ(QuantileValue({}, 0, 0.5), 0u);
}

TEST(HistogramSlot, BinsByDepthAndRecountOnANewRegion) {
  auto image = test::MakeImage<CImageGray>(8, 4, 2);
  HistogramResult result;
  ASSERT_TRUE(image->Histogram(0, result));
  ASSERT_EQ(result.bins, 256u);
  ASSERT_EQ(result.channels.size(), 1u);
  EXPECT_EQ(result.channels[0].total, 8u);
  EXPECT_EQ(result.channels[0].counts[101], 1u);
  EXPECT_DOUBLE_EQ(result.channels[0].mean, 51.5);

  image->SetRegionOfInterest(Rect{1, 1, 2, 1});
  ASSERT_TRUE(image->Histogram(0, result));
  EXPECT_EQ(result.channels[0].total, 2u);
  EXPECT_EQ(result.channels[0].counts[1], 0u);
  EXPECT_FALSE(image->RegionChanged());
  EXPECT_FALSE(image->Histogram(2, result));

  auto deep = test::MakeImage<CImageRgb>(32, 2, 1);  // R 0,1; G 1000,1001; B 2000,2001
  ASSERT_TRUE(deep->Histogram(1, result));
  EXPECT_EQ(result.bins, 65536u);
  ASSERT_EQ(result.channels.size(), 3u);
  EXPECT_EQ(result.channels[2].counts[0], 2u) << "32-bit values fall into bins by their upper half";
  EXPECT_EQ(result.channels[2].median, 2001u);
}

}  // namespace
}  // namespace korvanel
