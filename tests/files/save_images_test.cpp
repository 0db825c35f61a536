#include "files/save_images.h"

#include <gtest/gtest.h>

#include <regex>

#include "files/save_statistics.h"
#include "image/image_gray.h"
#include "image/image_yuv.h"
#include "ops/worker_pool.h"
#include "support/image_builders.h"
#include "support/recording_save_host.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

class SaveImagesTest : public ::testing::Test {
 protected:
  SaveTarget Target(IImageContainer& image, const std::string& name) {
    return {&image, dir.File(name), true};
  }
  test::TempDir dir;
  test::RecordingSaveHost host;
  SaveSettings settings;
};

TEST_F(SaveImagesTest, SavesEachImageAndReportsIt) {
  auto a = test::MakeImage<CImageGray>(8, 3, 1);
  auto b = test::MakeImage<CImageGray>(8, 2, 2);
  b->SetRegionOfInterest(Rect{1, 0, 1, 1});
  ASSERT_TRUE(SaveImages({Target(*a, "a.raw"), Target(*b, "b.raw")}, {}, {}, settings, host));
  EXPECT_EQ(test::ReadWholeFile(dir / "a.3x1.raw"), std::string("\x00\x01\x02", 3));
  EXPECT_EQ(test::ReadWholeFile(dir / "b_xy_1_0.1x2.raw"), std::string("\x01\x65", 2));
  ASSERT_EQ(host.statuses.size(), 3u);
  EXPECT_EQ(host.statuses[0], "Saving image(s)...");
  EXPECT_TRUE(std::regex_match(host.statuses[1], std::regex("Saved '" + dir.File("a.3x1.raw") + "' \\(\\d+ ms\\)")))
      << host.statuses[1];
  EXPECT_EQ(host.saved, (std::vector<const IImageContainer*>{a.get(), b.get()}));
  EXPECT_TRUE(host.errors.empty());
}

TEST_F(SaveImagesTest, YuvRegionsWidenToTheChromaGridAndStayAsTheyWere) {
  CImageYuv420 image;
  image.SetPacking(Packing::PlanarInterleave);
  ASSERT_TRUE(image.CheckLayout("YYYYUV"));
  std::vector<uint8_t> bytes(8 * 4 * 3 / 2);
  for (size_t i = 0; i < bytes.size(); ++i) bytes[i] = static_cast<uint8_t>(i);
  ASSERT_TRUE(image.Load(bytes.data(), bytes.size(), 8, 4, "YYYYUV", 8));
  const Rect roi{5, 1, 5, 1};
  image.SetRegionOfInterest(roi);
  ASSERT_TRUE(SaveImages({Target(image, "f.yuv")}, {}, {}, settings, host));
  // Columns 4..7, rows 0..1: the Y of that block, then the chroma pairs of
  // its two cells (cells 2 and 3 of the first row pair, from byte 32 on).
  EXPECT_EQ(test::ReadWholeFile(dir / "f_xy_4_0.4x2.yuv"),
            std::string("\x04\x05\x06\x07\x0C\x0D\x0E\x0F\x24\x25\x26\x27", 12));
  EXPECT_EQ(image.GetRegionOfInterest(), roi);
}

TEST_F(SaveImagesTest, HexTextFollowsTheCArraySetting) {
  auto image = test::MakeImage<CImageGray>(8, 2, 1);
  settings.c_arrays = true;
  ASSERT_TRUE(SaveImages({Target(*image, "c.raw")}, {SaveFormat::HexText, SavePacking::Original, false},
                         {}, settings, host));
  EXPECT_EQ(test::ReadWholeFile(dir / "c.2x1.hex.txt"),
            "const unsigned char rawY[2] = {\n\t0x00, 0x01\n};\t// 2 bytes\n");
}

TEST_F(SaveImagesTest, FailuresAndCancelAreReported) {
  auto image = test::MakeImage<CImageGray>(8, 2, 1);
  const std::string missing = dir.File("missing/x.2x1.raw");
  EXPECT_FALSE(SaveImages({{image.get(), dir.File("missing/x.raw"), true}}, {}, {}, settings, host));
  EXPECT_EQ(host.errors, std::vector<std::string>{"[Save image error]: Error Can't open " + missing +
                                                  " for writing while saving " + missing});
  SaveProgress progress;
  progress.cancel = true;
  EXPECT_FALSE(SaveImages({Target(*image, "y.raw")}, {}, {}, settings, host, &progress));
  EXPECT_EQ(host.statuses.back(), "Save file: User abort (partially written...)");
  EXPECT_TRUE(host.saved.empty());
  EXPECT_EQ(host.errors.size(), 1u);
}

TEST_F(SaveImagesTest, OnThePoolTheWriteIsAJobThatCountsAndCancels) {
  auto image = test::MakeImage<CImageGray>(16, 64, 40);
  WorkerPool pool(2);
  JobRunner runner(&pool);
  ASSERT_TRUE(SaveImages({Target(*image, "p.raw")}, {}, {}, settings, host, nullptr, &runner));
  const std::string written = test::ReadWholeFile(dir / "p.64x40.raw");
  ASSERT_EQ(written.size(), 64u * 40 * 2);
  EXPECT_EQ(static_cast<uint8_t>(written[2 * (64 * 39 + 63)]), (39 * 100 + 63) & 0xFF);

  // A job told to stop at its first row: the user-abort status, nothing saved.
  struct StopAtOnce : IRowObserver {
    bool RowDone(uint32_t) override { return false; }
  } stop;
  SaveProgress progress;
  progress.observer = &stop;
  host.saved.clear();
  EXPECT_FALSE(SaveImages({Target(*image, "q.raw")}, {}, {}, settings, host, &progress));
  EXPECT_EQ(host.statuses.back(), "Save file: User abort (partially written...)");
  EXPECT_TRUE(host.saved.empty());
}

TEST_F(SaveImagesTest, StatisticsFileNamesTextsAndErrors) {
  auto image = test::MakeImage<CImageGray>(8, 2, 1);
  ASSERT_TRUE(SaveStatistics(Target(*image, "s.raw"), {}, settings, host));
  EXPECT_EQ(test::ReadWholeFile(dir / "s.stat.txt").substr(0, 35), "<Luma-8>\n  Distribution        = 2\n");
  image->SetRegionOfInterest(Rect{1, 0, 1, 0});
  ASSERT_TRUE(SaveStatistics(Target(*image, "s.raw"), {}, settings, host));
  EXPECT_NE(test::ReadWholeFile(dir / "s_xy_1_0.1x1.stat.txt").find("Distribution        = 1"),
            std::string::npos);
  auto deep = test::MakeImage<CImageGray>(32, 1, 1);
  const std::string missing = dir.File("missing/d.stat.txt");
  EXPECT_FALSE(SaveStatistics({deep.get(), dir.File("missing/d.raw"), true}, {}, settings, host));
  EXPECT_EQ(host.statuses, (std::vector<std::string>{
                               "Saving image histogram...", "Saving image histogram...",
                               "Saving image histogram (might take time due to 32bpp statistics "
                               "calculation)..."}));
  EXPECT_EQ(host.errors,
            std::vector<std::string>{"[Save image statistics error]: Error while saving " + missing});
  // An existing statistics file asks with its own title.
  host.answer = false;
  image->SetRegionOfInterest(Rect::None());
  EXPECT_FALSE(SaveStatistics(Target(*image, "s.raw"), {}, settings, host));
  EXPECT_EQ(host.questions, std::vector<std::string>{"[Save image statistics warning]: The file " +
                                                     dir.File("s.stat.txt") +
                                                     " already exists. Overwrite?"});
}

}  // namespace
}  // namespace korvanel
