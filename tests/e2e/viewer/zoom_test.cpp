// The picture on the real screen: at ZF 1 every image pixel is one screen
// pixel of the rendition's colour, and keypad + turns each into a 2x2 block.
#include <gtest/gtest.h>

#include <optional>

#include "e2e/viewer/viewer_session.h"

namespace korvanel::test {
namespace {

TEST_F(ViewerGradient, KeypadPlusDoublesEveryPixelOnScreen) {
  ASSERT_TRUE(session.Keys(window, {"KP_Add"}));
  EXPECT_TRUE(WaitFor([&] { return FindPicture(session.Screenshot(window), *rendition, 2).has_value(); },
                      kExitLimit))
      << "the 128x96 picture at ZF 2";
  Exit();
}

}  // namespace
}  // namespace korvanel::test
