#include "files/save_naming.h"

#include <gtest/gtest.h>

namespace korvanel {
namespace {

struct NameCase {
  const char* file;
  SaveMode mode;
  bool roi;
  Rect area;
  bool from_picture;
  const char* name;
};

TEST(SaveNaming, AutomaticNames) {
  const NameCase cases[] = {
      {"a.raw", SaveMode::Text, true, {5, 6, 14, 15}, false, "a_xy_5_6.10x10.txt"},
      {"photo.jpg", SaveMode::Raw, false, {}, true, "photo.bin.640x480.raw"},
      {"photo.jpg", SaveMode::Raw, true, {0, 0, 1, 1}, true, "photo_xy_0_0.2x2.raw"},
      {"cam_640x480.raw", SaveMode::Raw, false, {}, false, "cam_640x480.raw"},
      {"cam.raw", SaveMode::Raw, false, {}, false, "cam.640x480.raw"},
      {"/x/y/cam.yuv", SaveMode::HexDump, false, {}, false, "cam.640x480.hex.txt"},
      {"frame.yuv", SaveMode::CArray, false, {}, false, "frame.640x480.hex.txt"},
      {"scan.bmp", SaveMode::Raw, false, {}, false, "scan.640x480.raw"},
      // The picture test is a substring search: "if" is inside "gif", and an
      // empty extension is inside anything.
      {"data.if", SaveMode::Raw, false, {}, false, "data.640x480.raw"},
      {"noext", SaveMode::Raw, false, {}, false, "noext.640x480.raw"},
      {"data.y16", SaveMode::Raw, false, {}, false, "data.640x480.y16"},
      // Only both numbers in the stem keep it as it is.
      {"cam_640.raw", SaveMode::Raw, false, {}, false, "cam_640.640x480.raw"},
  };
  for (const NameCase& c : cases) {
    EXPECT_EQ(MakeSaveName(c.file, c.mode, c.roi ? &c.area : nullptr, 640, 480, c.from_picture), c.name)
        << c.file;
  }
}

TEST(SaveNaming, StatisticsNamesAndTheLengthLimit) {
  const Rect roi{1, 2, 3, 5};
  EXPECT_EQ(MakeStatisticsName("/d/a.raw", nullptr), "a.stat.txt");
  EXPECT_EQ(MakeStatisticsName("/d/a.raw", &roi), "a_xy_1_2.3x4.stat.txt");
  const std::string long_stem(600, 's');
  EXPECT_EQ(MakeSaveName(long_stem + ".raw", SaveMode::Raw, nullptr, 1, 1, false).size(), 511u);
  EXPECT_EQ(MakeStatisticsName(long_stem, nullptr).size(), 511u);
}

}  // namespace
}  // namespace korvanel
