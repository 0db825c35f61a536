// Start-up and exit of the real window: what the user sees with no image,
// the exit through the File menu, and an argument list that fails.
#include <gtest/gtest.h>

#include <map>

#include "e2e/viewer/viewer_session.h"

namespace korvanel::test {
namespace {

constexpr uint32_t kNoImageFill = 0x040000;
constexpr uint32_t kWhite = 0xFFFFFF;

// The colours along one screenshot row and how often each occurs.
std::map<uint32_t, int> RowColours(const QImage& image, int y) {
  std::map<uint32_t, int> colours;
  for (int x = 0; x < image.width(); ++x) ++colours[PixelAt(image, x, y)];
  return colours;
}

TEST(ViewerStartup, EmptyWindowInvitesAndFileExitEndsWithZero) {
  ViewerSession session;
  ASSERT_TRUE(session.Start({}));
  const std::string window = session.FindWindow();
  ASSERT_FALSE(window.empty()) << session.Output();
  EXPECT_EQ(Shell("xdotool getwindowname " + window).output, "Korvanel");

  // The invitation is centred in the image area: some row through the
  // middle third holds the fill and white text, and the corners hold fill.
  QImage shot;
  bool text_seen = false;
  WaitFor(
      [&] {
        shot = session.Screenshot(window);
        for (int y = shot.height() / 3; y < 2 * shot.height() / 3 && !text_seen; ++y) {
          const std::map<uint32_t, int> colours = RowColours(shot, y);
          text_seen = colours.count(kWhite) != 0 && colours.count(kNoImageFill) != 0;
        }
        return text_seen;
      },
      kExitLimit);
  ASSERT_FALSE(shot.isNull());
  EXPECT_TRUE(text_seen) << "no row with (4,0,0) fill and white text";
  EXPECT_EQ(PixelAt(shot, shot.width() / 2, shot.height() / 4), kNoImageFill);
  EXPECT_EQ(PixelAt(shot, 30, shot.height() / 2), kNoImageFill);

  ASSERT_TRUE(session.Keys(window, {"alt+f", "x"}));
  EXPECT_EQ(session.WaitExit(), std::optional<int>(0)) << session.Output();
}

TEST(ViewerStartup, FailedCommandShowsItsBoxThenEndsWith255) {
  ViewerSession session;
  ASSERT_TRUE(session.Start({"missing.raw"}));
  const std::string box = session.FindWindow("^File doesn't exist$");
  ASSERT_FALSE(box.empty()) << session.Output();
  ASSERT_TRUE(session.Keys(box, {"Return"}));
  EXPECT_EQ(session.WaitExit(), std::optional<int>(255));
  EXPECT_EQ(session.Output(), "Open image failed\n");
}

}  // namespace
}  // namespace korvanel::test
