// Pixel inspection on the real screen: P puts the pixel under the pointer on
// the X clipboard, and a typed jump marks its target with a white ring.
#include <gtest/gtest.h>

#include <array>
#include <string>

#include "e2e/viewer/viewer_session.h"
#include "image/image_container.h"

namespace korvanel::test {
namespace {

TEST_F(ViewerGradient, PCopiesThePixelAndAJumpMarksItsTarget) {
  std::array<uint32_t, 3> v{};
  ASSERT_TRUE(reference.Images().At(0).image->GetSampleValues(10, 5, v));
  // The jump ring's left side crosses pixel (59, 45); the picture is not white there.
  ASSERT_NE(RenditionColour(*rendition, 59, 45), 0xFFFFFFu);

  const std::string move = "timeout 10 xdotool mousemove --window " + window + " " +
                           std::to_string(origin.x() + 10) + " " + std::to_string(origin.y() + 5);
  ASSERT_EQ(Shell(move).status, 0);
  ASSERT_TRUE(session.Keys(window, {"p"}));
  const std::string expected = "<10,5> =<" + std::to_string(v[0]) + "," + std::to_string(v[1]) + "," +
                               std::to_string(v[2]) + ">";
  std::string copied;
  EXPECT_TRUE(WaitFor(
      [&] { return (copied = Shell("timeout 5 xclip -selection clipboard -o").output) == expected; }, kExitLimit))
      << "clipboard: " << copied;

  ASSERT_TRUE(session.Keys(window, {"j", "minus", "1", "space", "minus", "1", "space"}));
  // The marker lives one second.
  EXPECT_TRUE(WaitFor(
      [&] { return PixelAt(session.Screenshot(window), origin.x() + 59, origin.y() + 45) == 0xFFFFFFu; },
      milliseconds(1000)))
      << "the white jump marker at the last pixel";

  // A refused jump and a cancelled one leave their status texts in the log.
  ASSERT_TRUE(session.Keys(window, {"j", "9", "9", "space"}));
  ASSERT_TRUE(session.Keys(window, {"j", "5", "Escape"}));
  const auto logged = [&] {
    const std::string log = session.ReadFile("qel.log_app.txt");
    return log.find("99 is not a valid X coordinate, aborting...") != std::string::npos &&
           log.find("Operation canceled due to user abort") != std::string::npos;
  };
  EXPECT_TRUE(WaitFor(logged, kExitLimit)) << session.ReadFile("qel.log_app.txt");
  Exit();
}

}  // namespace
}  // namespace korvanel::test
