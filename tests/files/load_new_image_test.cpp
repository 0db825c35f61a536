#include "files/load_new_image.h"

#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>
#include <fstream>

#include "support/collecting_sink.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using Lines = std::vector<std::string>;

class LoadNewImageTest : public ::testing::Test {
 protected:
  void Rules(const std::string& text) {
    CNullLineSink quiet;
    ASSERT_TRUE(LoadFormatsFile({dir.Write("Korvanel.fmt", text)}, rules, quiet));
  }
  LoadedImage Open(const std::string& path) {
    log.lines.clear();
    return LoadNewImage(path, rules, log);
  }
  // One format group: a name pattern, a size and the formats tried in order.
  static std::string Group(const std::string& pattern, const std::string& width,
                           const std::string& height, std::initializer_list<const char*> formats) {
    std::string text = "<format_group>\nfile_pattern = [" + pattern + "]\nwidth = " + width +
                       "\nheight = " + height + "\n";
    for (const char* format : formats) text += std::string("format = [],") + format + "\n";
    return text + "</format_group>\n";
  }
  static std::vector<uint8_t> Ramp(size_t n) {
    std::vector<uint8_t> bytes(n);
    for (size_t i = 0; i < n; ++i) bytes[i] = static_cast<uint8_t>(i);
    return bytes;
  }
  static uint32_t At(const LoadedImage& loaded, uint32_t x, uint32_t y, uint32_t c = 0) {
    std::array<uint32_t, 3> v{};
    loaded.image->GetSampleValues(x, y, v);
    return v[c];
  }

  test::TempDir dir;
  FormatRules rules;
  test::CollectingSink log;
};

TEST_F(LoadNewImageTest, TracesAMatchedOpen) {
  Rules(
      "<format_group>\n"                          // 0
      "file_pattern = [.*_(\\d+)x(\\d+)\\.nv12]\n"  // 1
      "width = [.*_(\\d+)x(\\d+)\\.nv12],$1\n"      // 2
      "height = [.*_(\\d+)x(\\d+)\\.nv12],$2\n"     // 3
      "format = [.*],PI,YYYYUV,8\n"               // 4
      "</format_group>\n");
  const std::string path = dir.WriteBytes("cam_4x2.NV12", Ramp(12));
  LoadedImage loaded = Open(path);
  ASSERT_NE(loaded.image, nullptr);
  EXPECT_EQ(loaded.format_text, "PI,YYYYUV,8");
  EXPECT_EQ(log.lines, (Lines{"## LoadNewImage", "Trying to load " + path, "File name: cam_4x2.NV12",
                              "Matched regex file_pattern/1 [cam_4x2.NV12]", "Matched regex width/2",
                              "Matched width(4)/2 [cam_4x2.NV12]", "Matched regex height/3",
                              "Matched height(2)/3 [cam_4x2.NV12]",
                              "Matched format/4 [PI,YYYYUV,8] --> Trying to load binary",
                              "Matched YUV-420 (SP)", "Loaded " + path + " as YUV"}));
  EXPECT_EQ(At(loaded, 3, 1, 1), 10u);
}

TEST_F(LoadNewImageTest, ASizeMismatchFallsThroughToTheNextFormatAndGroup) {
  Rules(
      "<format_group>\n"           // 0
      "file_pattern = [.*\\.raw]\n"  // 1
      "width = 4\n"                // 2
      "height = 2\n"               // 3
      "format = [nomatch],P,Y,8\n"  // 4
      "format = [],P,Y,32\n"       // 5
      "format = [],I,RGB,8\n"      // 6
      "</format_group>\n"          // 7
      "<format_group>\n"           // 8
      "file_pattern = []\n"        // 9
      "width = 2\n"                // 10
      "height = 2\n"               // 11
      "format = [],I,YUYV,-16\n"   // 12
      "</format_group>\n");
  const std::string path = dir.WriteBytes("a.raw", Ramp(16));
  LoadedImage loaded = Open(path);
  ASSERT_NE(loaded.image, nullptr);
  EXPECT_EQ(log.lines,
            (Lines{"## LoadNewImage", "Trying to load " + path, "File name: a.raw",
                   "Matched regex file_pattern/1 [a.raw]", "Can't match regex format/4",
                   "Matched format/5 [P,Y,32] --> Trying to load binary", "Failed to load as GRAY",
                   "Matched format/6 [I,RGB,8] --> Trying to load binary", "Failed to load as RGB",
                   "Matched regex file_pattern/9 [a.raw]",
                   "Matched format/12 [I,YUYV,-16] --> Trying to load binary", "Matched YUV-422",
                   "Loaded " + path + " as YUV"}));
  EXPECT_EQ(At(loaded, 0, 0), 0x0001u);  // big-endian 16-bit: bytes 00 01
}

TEST_F(LoadNewImageTest, OffsetsFromBothEnds) {
  Rules(Group("head.*", "2", "2", {"8,P,Y,8"}) + Group("tail.*", "2", "1", {"-4,P,Y,16"}));
  LoadedImage head = Open(dir.WriteBytes("head.bin", Ramp(100)));
  ASSERT_NE(head.image, nullptr);
  EXPECT_EQ(At(head, 0, 0), 8u);
  EXPECT_EQ(At(head, 1, 1), 11u);
  LoadedImage tail = Open(dir.WriteBytes("tail.bin", Ramp(100)));
  ASSERT_NE(tail.image, nullptr);
  EXPECT_EQ(At(tail, 0, 0), 0x6160u);
  EXPECT_EQ(At(tail, 1, 0), 0x6362u);
}

TEST_F(LoadNewImageTest, OffsetProblemsEndTheOpen) {
  Rules(Group("", "4", "4", {"12,P,Y,8", "P,Y,8"}));
  const std::string path = dir.WriteBytes("short.bin", Ramp(20));
  EXPECT_EQ(Open(path).image, nullptr);
  EXPECT_EQ(log.lines.back(),
            "Can't load path " + path + " (ofs = 12, expected raw size = 16, file size = 20 bytes)");
  const std::string empty = dir.WriteBytes("empty.bin", {});
  Rules(Group("", "4", "4", {"P,Y,8"}));
  EXPECT_EQ(Open(empty).image, nullptr);
  EXPECT_EQ(log.lines.back(), "Can't load path " + empty + " (file size = 0 bytes)");
}

TEST_F(LoadNewImageTest, AsciiEntriesFindTheirOwnSize) {
  Rules(Group(".*\\.csv", "1", "1", {"A,P,Y,-16", "A,P,Y,16"}));
  const std::string path = dir.Write("m.csv", "1, 2, 3\n4, 5, 600\n");
  LoadedImage loaded = Open(path);
  ASSERT_NE(loaded.image, nullptr);
  uint32_t w = 0, h = 0;
  loaded.image->GetSize(w, h);
  EXPECT_EQ(w, 3u);
  EXPECT_EQ(h, 2u);
  EXPECT_EQ(At(loaded, 2, 1), 600u);
  EXPECT_EQ(log.lines[4], "ASCII: Big-endian BPP -16 isn't supported for text input");
  EXPECT_EQ(log.lines[5], "Matched format/5 [P,Y,16] --> Trying to load binary");
}

TEST_F(LoadNewImageTest, TheDirectExpressionComesFirst) {
  Rules(Group("", "2", "2", {"P,Y,8"}));
  ASSERT_TRUE(SetDirectExpression("p,y,16", 2, 1, rules.direct, log));
  LoadedImage loaded = Open(dir.WriteBytes("x.bin", Ramp(4)));
  ASSERT_NE(loaded.image, nullptr);
  EXPECT_EQ(loaded.image->GetBitsPerComponent(), 16u);
}

TEST_F(LoadNewImageTest, PartialNameMatchesAndBadRegexesDoNotCount) {
  Rules(Group("cam", "2", "2", {"P,Y,8"}) + Group("(", "2", "2", {"P,Y,8"}) +
        Group("", "[x_(\\d+)],$3", "2", {"P,Y,8"}));
  const std::string path = dir.WriteBytes("x_2cam", Ramp(4));
  EXPECT_EQ(Open(path).image, nullptr);
  EXPECT_EQ(log.lines, (Lines{"## LoadNewImage", "Trying to load " + path, "File name: x_2cam",
                              "Can't match regex file_pattern/1 [x_2cam]", "Invalid regex [(]",
                              "Can't match regex file_pattern/7 [x_2cam]",
                              "Matched regex file_pattern/13 [x_2cam]", "Failed to parse width/14 [x_2cam]"}));
}

TEST_F(LoadNewImageTest, AFrameLargerThanTheMemoryLeftIsRefusedBeforeReading) {
  // A sparse 40 GB file whose size fits the format exactly.
  const std::string path = dir.File("huge.raw");
  { std::ofstream(path, std::ios::binary); }
  std::filesystem::resize_file(path, 100000ull * 100000 * 4);
  ASSERT_TRUE(SetDirectExpression("P,Y,32", 100000, 100000, rules.direct, log));
  EXPECT_EQ(Open(path).image, nullptr);
  EXPECT_EQ(log.lines.back().rfind("Can't load path " + path + ": about 114440 MB needed, ", 0), 0u)
      << log.lines.back();
}

TEST_F(LoadNewImageTest, ASizeThatCannotFitIsNotRead) {
  Rules(Group("", "2", "2", {"P,Y,16"}));
  const std::string path = dir.WriteBytes("odd.bin", Ramp(5));
  EXPECT_EQ(Open(path).image, nullptr);
  EXPECT_EQ(log.lines[3], "Matched regex file_pattern/1 [odd.bin]");
  EXPECT_EQ(log.lines[4], "Matched format/4 [P,Y,16] --> Trying to load binary");
  EXPECT_EQ(log.lines[5], "Failed to load as GRAY");
}

TEST_F(LoadNewImageTest, CommonPicturesDecodeIntoEightBitRgb) {
  QImage picture(3, 2, QImage::Format_RGB32);
  picture.fill(qRgb(10, 20, 30));
  picture.setPixel(2, 1, qRgb(200, 100, 50));
  for (const char* ext : {"png", "bmp", "tiff", "ico", "jpg"}) {
    const std::string path = dir.File(std::string("p.") + ext);
    ASSERT_TRUE(picture.save(QString::fromStdString(path))) << ext;
    LoadedImage loaded = Open(path);
    ASSERT_NE(loaded.image, nullptr) << ext;
    EXPECT_EQ(log.lines.back(), "Loaded " + path + " as RGB");
    EXPECT_STREQ(loaded.image->TypeName(), "RGB");
    EXPECT_EQ(loaded.image->GetBitsPerComponent(), 8u);
    if (std::string(ext) != "jpg") {
      EXPECT_EQ(At(loaded, 2, 1, 0), 200u) << ext;
      EXPECT_EQ(At(loaded, 2, 1, 2), 50u) << ext;
    }
  }
  // A 1x1 GIF (Qt reads GIF but cannot write it).
  const std::vector<uint8_t> gif = {'G', 'I', 'F', '8', '9', 'a', 1, 0, 1, 0, 0x80, 0, 0, 0xFF, 0, 0, 0, 0,
                                    0, 0x21, 0xF9, 4, 0, 0, 0, 0, 0, 0x2C, 0, 0, 0, 0, 1, 0, 1, 0, 0,
                                    2, 2, 0x44, 1, 0, 0x3B};
  LoadedImage loaded = Open(dir.WriteBytes("dot.GIF", gif));
  ASSERT_NE(loaded.image, nullptr);
  EXPECT_EQ(At(loaded, 0, 0, 0), 255u);
  // Not a picture at all.
  EXPECT_EQ(Open(dir.Write("fake.png", "not a png")).image, nullptr);
  EXPECT_EQ(log.lines.back(), "Failed to load as RGB using GDI+");
}

}  // namespace
}  // namespace korvanel
