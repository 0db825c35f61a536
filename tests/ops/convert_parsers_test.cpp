#include "ops/convert_parsers.h"

#include <gtest/gtest.h>

namespace korvanel {
namespace {

TEST(ConvertNewSize, EvaluatesWidthAndHeightFromTheSource) {
  struct Row {
    const char* text;
    uint32_t w, h;
    uint32_t width, height;
  };
  const Row rows[] = {
      {"w*2;h+100", 640, 480, 1280, 580},
      {"w/3;h", 640, 480, 213, 480},
      {"w*1.5;h", 641, 480, 962, 480},
      {" sqrt(w*h) ; max(w,h) ", 400, 100, 200, 400},
      {"300;h/2", 10, 9, 300, 4},
  };
  for (const Row& row : rows) {
    NewSize size;
    std::string message;
    ASSERT_TRUE(ParseNewSize(row.text, row.w, row.h, size, message)) << row.text << ": " << message;
    EXPECT_EQ(size.width, row.width) << row.text;
    EXPECT_EQ(size.height, row.height) << row.text;
  }
}

TEST(ConvertNewSize, RefusalsSayWhy) {
  struct Row {
    const char* text;
    std::string message;
  };
  const Row rows[] = {
      {"640x480", "No new size is entered or semi-colon(;) separator not found"},
      {"1;2;3", "Must specify width and height"},
      {"w-w;h", "0x480 isn't legal new size"},
      {"-5;h", "0x480 isn't legal new size"},
      {"40000;40000", "Have we gone mad? 1073 MP isn't enough anymore... :)"},
  };
  for (const Row& row : rows) {
    NewSize size;
    std::string message;
    EXPECT_FALSE(ParseNewSize(row.text, 640, 480, size, message)) << row.text;
    EXPECT_EQ(message, row.message);
  }
  NewSize size;
  std::string message;
  EXPECT_FALSE(ParseNewSize("q;h", 640, 480, size, message));
  EXPECT_EQ(message.rfind("Can't evaluate the new image width: ", 0), 0u) << message;
  EXPECT_FALSE(ParseNewSize("w;1/0", 640, 480, size, message));
  EXPECT_EQ(message.rfind("Can't evaluate the new image height: ", 0), 0u) << message;
}

TEST(ConvertBaseOffset, PositionsInTheOutputOrTheSource) {
  BaseOffset offset;
  std::string message;
  ASSERT_TRUE(ParseBaseOffset("  ", 50, 50, {100, 100}, offset, message));
  EXPECT_EQ(offset.x, 0);
  ASSERT_TRUE(ParseBaseOffset("-1,-1", 50, 50, {100, 100}, offset, message));
  EXPECT_EQ(offset.x, 99);
  EXPECT_EQ(offset.y, 99);
  ASSERT_TRUE(ParseBaseOffset("-1, 3", 50, 40, {20, 100}, offset, message));  // smaller: in the source
  EXPECT_EQ(offset.x, 49);
  EXPECT_EQ(offset.y, 3);

  EXPECT_FALSE(ParseBaseOffset("1.5,2", 50, 50, {100, 100}, offset, message));
  EXPECT_EQ(message, "Base offset for resize isn't a valid integer coordinate");
  EXPECT_FALSE(ParseBaseOffset("100,0", 50, 50, {100, 100}, offset, message));
  EXPECT_EQ(message,
            "The new size 100x100 is larger than the source size (50x50) so the offset <100,0> must start "
            "inside the output image.");
  EXPECT_FALSE(ParseBaseOffset("0,50", 50, 50, {20, 20}, offset, message));
  EXPECT_EQ(message,
            "The new size 2020 is smaller (or partially smaller) than the source size (50x50) so the offset "
            "<0,50> must lie inside the source image.");
}

TEST(ConvertColorTransform, RowsByTargetFamily) {
  ColorTransform t;
  std::string message;
  ASSERT_TRUE(ParseColorTransform({"1,0,0,-255", "0,1,0,0", "0,0,1,255"}, "I,RGB,8", t, message));
  EXPECT_DOUBLE_EQ(t.m[0][3], -255.0);
  EXPECT_DOUBLE_EQ(t.m[2][2], 1.0);

  EXPECT_FALSE(ParseColorTransform({"1,0,0", "", ""}, "P,Y,U,V,8", t, message));
  EXPECT_EQ(message, "Please fix row 'Y' (must have exactly 3 comma separated coefficients)");
  EXPECT_FALSE(ParseColorTransform({"1,0,0,0", "1,0,0,300", "1,0,0,0"}, "I,BGR,16", t, message));
  EXPECT_EQ(message, "Please fix last coefficient of row 'G' (must range between -255..255)");
  EXPECT_FALSE(ParseColorTransform({"1,0,0,0", "0,1,0,0", "0,inf,1,0"}, "I,RGB,8", t, message));
  EXPECT_EQ(message, "Please fix row 'B' (coefficients must range between -1000..1000)");
  EXPECT_FALSE(ParseColorTransform({"nan,0,0,0", "", ""}, "P,Y,8", t, message));
  EXPECT_EQ(message, "Please fix row 'Y' (coefficients must range between -1000..1000)");
  // A grey target checks only the first row; text that is no number reads as 0.
  ColorTransform grey;
  ASSERT_TRUE(ParseColorTransform({"0.5,abc,,7", "junk", "junk"}, "P,Y,8", grey, message));
  EXPECT_DOUBLE_EQ(grey.m[0][0], 0.5);
  EXPECT_DOUBLE_EQ(grey.m[0][1], 0.0);
  EXPECT_DOUBLE_EQ(grey.m[0][3], 7.0);
}

}  // namespace
}  // namespace korvanel
