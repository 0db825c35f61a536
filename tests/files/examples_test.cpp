// The bundled examples are what a new user tries first: every sample file
// must open through the sample formats file with the intended format.
#include <gtest/gtest.h>

#include "files/load_new_image.h"
#include "support/collecting_sink.h"

namespace korvanel {
namespace {

TEST(Examples, EverySampleOpensThroughTheSampleRules) {
  const std::string dir = KORVANEL_EXAMPLES_DIR;
  FormatRules rules;
  test::CollectingSink log;
  ASSERT_TRUE(LoadFormatsFile({dir + "/Korvanel.fmt"}, rules, log)) << log.lines.back();
  EXPECT_EQ(log.lines.back(), "6 format groups were loaded from " + dir + "/Korvanel.fmt (56 lines)");

  struct Sample {
    const char* file;
    const char* label;
    uint32_t width, height;
    uint32_t x, y, c, value;  // one sample to check
  };
  const Sample samples[] = {
      {"gradient_64x48.nv12", "YUV420 12bpp", 64, 48, 5, 3, 0, 26},
      {"frame_32x16_yuyv.yuv", "YUV422 16bpp", 32, 16, 3, 2, 2, 255 - 32},
      {"depth.y16", "Y16", 40, 30, 2, 1, 0, 2500},
      {"sensor_dump.raw", "Y16", 64, 32, 1, 1, 0, 96},
      {"colors_16x8.rgb", "RGBx8", 16, 8, 15, 7, 2, 15},
      {"matrix.csv", "Y8", 8, 6, 7, 5, 0, 188},
  };
  for (const Sample& s : samples) {
    SCOPED_TRACE(s.file);
    LoadedImage loaded = LoadNewImage(dir + "/" + s.file, rules, log);
    ASSERT_NE(loaded.image, nullptr) << log.lines.back();
    EXPECT_EQ(loaded.image->FormatLabel(), s.label);
    uint32_t w = 0, h = 0;
    loaded.image->GetSize(w, h);
    EXPECT_EQ(w, s.width);
    EXPECT_EQ(h, s.height);
    std::array<uint32_t, 3> v{};
    ASSERT_TRUE(loaded.image->GetSampleValues(s.x, s.y, v));
    EXPECT_EQ(v[s.c], s.value);
  }
}

}  // namespace
}  // namespace korvanel
