#include "files/png_export.h"

#include <gtest/gtest.h>

#include <QImage>

#include "image/display_conversion.h"
#include "image/image_gray.h"
#include "image/image_yuv.h"
#include "support/image_builders.h"
#include "support/recording_save_host.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

TEST(PngExport, SixteenBitGreyShowsItsUpperBytesInTheRegion) {
  test::TempDir dir;
  auto image = test::MakeImage<CImageGray>(16, 30, 20);  // y*100 + x
  image->SetRegionOfInterest(Rect{10, 5, 19, 14});
  test::RecordingSaveHost host;
  ASSERT_TRUE(ExportPng({image.get(), dir.File("depth.y16"), true}, {}, {}, host));
  EXPECT_EQ(host.statuses, std::vector<std::string>{"Exported to PNG: '" + dir.File("depth.png") + "'"});
  const QImage png(QString::fromStdString(dir.File("depth.png")));
  ASSERT_FALSE(png.isNull());
  EXPECT_EQ(png.width(), 10);
  EXPECT_EQ(png.height(), 10);
  for (int y = 0; y < 10; ++y) {
    for (int x = 0; x < 10; ++x) {
      const int shown = ((y + 5) * 100 + x + 10) >> 8;
      EXPECT_EQ(png.pixel(x, y), qRgb(shown, shown, shown)) << x << "," << y;
    }
  }
}

TEST(PngExport, YuvPixelsAreTheRendition) {
  test::TempDir dir;
  auto image = test::MakeImage<CImageYuv444>(8, 4, 3);
  test::RecordingSaveHost host;
  // A forced name is used as given.
  ASSERT_TRUE(ExportPng({image.get(), dir.File("a.yuv"), true}, {dir.File("forced.png"), false}, {}, host));
  const QImage png(QString::fromStdString(dir.File("forced.png")));
  ASSERT_FALSE(png.isNull());
  const DisplayRendition* shown = image->BuildDisplay();
  for (int y = 0; y < 3; ++y) {
    for (int x = 0; x < 4; ++x) {
      const uint32_t p = shown->pixels[static_cast<size_t>(y * 4 + x)];
      EXPECT_EQ(png.pixel(x, y), qRgb(DisplayRed(p), DisplayGreen(p), DisplayBlue(p)));
    }
  }
}

TEST(PngExport, FailureNamesThePath) {
  test::TempDir dir;
  auto image = test::MakeImage<CImageGray>(8, 2, 2);
  test::RecordingSaveHost host;
  EXPECT_FALSE(ExportPng({image.get(), dir.File("none/a.raw"), true}, {}, {}, host));
  EXPECT_EQ(host.errors, std::vector<std::string>{"[Export PNG image error]: Error while saving " +
                                                  dir.File("none/a.png")});
}

}  // namespace
}  // namespace korvanel
