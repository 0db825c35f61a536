// Start-up of the real window with an argument list that fails. (The empty
// window's picture is the renderer's and the canvas's; every session here
// ends through File/Exit.)
#include <gtest/gtest.h>

#include "e2e/viewer/viewer_session.h"

namespace korvanel::test {
namespace {

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
