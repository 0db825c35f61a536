// Status messages of the real window reach the application log, where the
// other end-to-end checks read them.
#include <gtest/gtest.h>

#include "e2e/viewer/viewer_session.h"

namespace korvanel::test {
namespace {

const std::string kExamples = KORVANEL_EXAMPLES_DIR;

TEST(ViewerStatusLog, OpeningAFileLogsItsStatusLinesUnderStatusBar) {
  ViewerSession session;
  session.CopyIn({kExamples + "/Korvanel.fmt", kExamples + "/gradient_64x48.nv12"});
  ASSERT_TRUE(session.Start({"gradient_64x48.nv12"}));
  const std::string window = session.FindWindow();
  ASSERT_FALSE(window.empty()) << session.Output();
  const std::string loading = ": Status bar\nLoading image gradient_64x48.nv12...\n";
  EXPECT_TRUE(WaitFor([&] { return session.ReadFile("qel.log_app.txt").find(loading) != std::string::npos; },
                      kExitLimit))
      << session.ReadFile("qel.log_app.txt");
  ASSERT_TRUE(session.Keys(window, {"alt+f", "x"}));
  EXPECT_EQ(session.WaitExit(), std::optional<int>(0));
}

}  // namespace
}  // namespace korvanel::test
