// The filter dialog on the real screen: typed into with xdotool, a parse
// error shows its box over the dialog, which stays; a good filter closes it
// and lands in the edit history file.
#include <gtest/gtest.h>

#include "e2e/viewer/viewer_session.h"

namespace korvanel::test {
namespace {

TEST_F(ViewerGradient, TypedFilterIsRefusedThenAppliedAndRemembered) {
  ASSERT_TRUE(session.Keys(window, {"f"}));
  const std::string dialog = session.FindWindow("^Filter Colors$");
  ASSERT_FALSE(dialog.empty()) << session.Output();
  ASSERT_TRUE(session.Keys(dialog, {"5", "minus", "3", "Return"}));
  const std::string box = session.FindWindow("^Colors parse error$");
  ASSERT_FALSE(box.empty()) << session.Output();
  ASSERT_TRUE(session.Keys(box, {"Return"}));

  // The dialog is still there with the text; replace it with a good one.
  ASSERT_TRUE(session.Keys(dialog, {"ctrl+a", "0", "minus", "1", "0", "0", "comma", "asciicircum", "9", "9",
                                    "Return"}));
  EXPECT_TRUE(WaitFor(
      [&] { return session.ReadFile("Korvanel.dat").find("[FC_FILTER_EXPR]\n=0-100,^99\n") != std::string::npos; },
      kExitLimit))
      << session.ReadFile("Korvanel.dat");

  Exit();
  const std::string log = session.ReadFile("qel.log_app.txt");
  EXPECT_NE(log.find("Colors parse error\nPlease fix comp 1 token 1"), std::string::npos) << log;
  EXPECT_NE(log.find("Filter: Applied in "), std::string::npos) << log;
}

}  // namespace
}  // namespace korvanel::test
