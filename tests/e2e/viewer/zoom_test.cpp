// The picture on the real screen: at ZF 1 every image pixel is one screen
// pixel of the rendition's colour, and keypad + turns each into a 2x2 block.
#include <gtest/gtest.h>

#include <QPoint>
#include <optional>

#include "app/app_state.h"
#include "image/display_rendition.h"
#include "image/image_container.h"
#include "e2e/viewer/viewer_session.h"
#include "support/recording_feedback.h"

namespace korvanel::test {
namespace {

const std::string kExamples = KORVANEL_EXAMPLES_DIR;

uint32_t RenditionColour(const DisplayRendition& rendition, uint32_t x, uint32_t y) {
  const uint32_t p = rendition.pixels[size_t{y} * rendition.width + x];
  return uint32_t{DisplayRed(p)} << 16 | uint32_t{DisplayGreen(p)} << 8 | DisplayBlue(p);
}

// Where the whole rendition appears replicated k times, if anywhere.
std::optional<QPoint> FindPicture(const QImage& shot, const DisplayRendition& rendition, uint32_t k) {
  const int width = static_cast<int>(rendition.width * k);
  const int height = static_cast<int>(rendition.height * k);
  const uint32_t first = RenditionColour(rendition, 0, 0);
  for (int top = 0; top + height <= shot.height(); ++top) {
    for (int left = 0; left + width <= shot.width(); ++left) {
      if (PixelAt(shot, left, top) != first) continue;
      bool all = true;
      for (int y = 0; y < height && all; ++y) {
        for (int x = 0; x < width && all; ++x) {
          all = PixelAt(shot, left + x, top + y) ==
                RenditionColour(rendition, static_cast<uint32_t>(x) / k, static_cast<uint32_t>(y) / k);
        }
      }
      if (all) return QPoint(left, top);
    }
  }
  return std::nullopt;
}

TEST(ViewerZoom, KeypadPlusDoublesEveryPixelOnScreen) {
  RecordingFeedback feedback;
  AppState reference(feedback);
  ASSERT_TRUE(reference.LoadFormats(kExamples + "/Korvanel.fmt"));
  ASSERT_TRUE(reference.OpenImage(kExamples + "/gradient_64x48.nv12"));
  const DisplayRendition* rendition = reference.Images().At(0).image->BuildDisplay();
  ASSERT_NE(rendition, nullptr);

  ViewerSession session;
  session.CopyIn({kExamples + "/Korvanel.fmt", kExamples + "/gradient_64x48.nv12"});
  session.AppendIni("[gui]\ndef_zoom = 1\n");
  ASSERT_TRUE(session.Start({"gradient_64x48.nv12"}));
  const std::string window = session.FindWindow();
  ASSERT_FALSE(window.empty()) << session.Output();

  std::optional<QPoint> at_one;
  ASSERT_TRUE(WaitFor([&] { return (at_one = FindPicture(session.Screenshot(window), *rendition, 1)).has_value(); },
                      kExitLimit))
      << "the 64x48 picture at ZF 1";
  ASSERT_TRUE(session.Keys(window, {"KP_Add"}));
  std::optional<QPoint> at_two;
  EXPECT_TRUE(WaitFor([&] { return (at_two = FindPicture(session.Screenshot(window), *rendition, 2)).has_value(); },
                      kExitLimit))
      << "the 128x96 picture at ZF 2";
  ASSERT_TRUE(session.Keys(window, {"alt+f", "x"}));
  EXPECT_EQ(session.WaitExit(), std::optional<int>(0));
}

}  // namespace
}  // namespace korvanel::test
