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
