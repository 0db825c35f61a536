// F1 on the real screen: the help box in its colour with white text, each
// page its own text, and F1 again takes the box away.
#include <gtest/gtest.h>

#include <QRect>

#include "e2e/viewer/viewer_session.h"

namespace korvanel::test {
namespace {

constexpr uint32_t kHelpBox = 0x14005A;  // 20, 0, 90
constexpr uint32_t kWhite = 0xFFFFFF;

// The bounding box of the pixels of one colour.
QRect Bounds(const QImage& shot, uint32_t colour) {
  QRect bounds;
  for (int y = 0; y < shot.height(); ++y) {
    for (int x = 0; x < shot.width(); ++x) {
      if (PixelAt(shot, x, y) == colour) bounds |= QRect(x, y, 1, 1);
    }
  }
  return bounds;
}

int CountInside(const QImage& shot, uint32_t colour, const QRect& area) {
  int count = 0;
  for (int y = area.top(); y <= area.bottom(); ++y) {
    for (int x = area.left(); x <= area.right(); ++x) count += PixelAt(shot, x, y) == colour;
  }
  return count;
}

TEST(ViewerHelp, F1ShowsPageThreeInWhiteOnTheHelpBox) {
  ViewerSession session;
  ASSERT_TRUE(session.Start({}));
  const std::string window = session.FindWindow();
  ASSERT_FALSE(window.empty()) << session.Output();
  ASSERT_TRUE(Shell("xdotool windowsize " + window + " 1100 800").status == 0);
  ASSERT_TRUE(session.Keys(window, {"F1", "3"}));

  QImage page3;
  QRect box;
  ASSERT_TRUE(WaitFor(
      [&] {
        page3 = session.Screenshot(window);
        box = Bounds(page3, kHelpBox);
        return box.width() > 400 && box.height() > 200;
      },
      kExitLimit))
      << "the help box";
  // Page 3's rows start near the box's top: white text in its upper part.
  const QRect upper(box.left(), box.top(), box.width(), box.height() / 4);
  EXPECT_GT(CountInside(page3, kWhite, upper), 200);

  ASSERT_TRUE(session.Keys(window, {"2"}));
  ASSERT_TRUE(WaitFor([&] { return session.Screenshot(window).copy(upper) != page3.copy(upper); }, kExitLimit))
      << "page 2 shows another text";
  ASSERT_TRUE(session.Keys(window, {"F1"}));
  EXPECT_TRUE(WaitFor([&] { return Bounds(session.Screenshot(window), kHelpBox).isEmpty(); }, kExitLimit))
      << "F1 hides the box";
  ASSERT_TRUE(session.Keys(window, {"alt+f", "x"}));
  EXPECT_EQ(session.WaitExit(), std::optional<int>(0));
}

}  // namespace
}  // namespace korvanel::test
