// Commands of the real window that leave something outside it: the save
// phase and the PNG export write files beside the image, and Ctrl+C fills the
// X clipboard.
#include <gtest/gtest.h>

#include <QByteArray>
#include <QImage>
#include <string>

#include "e2e/viewer/viewer_session.h"

namespace korvanel::test {
namespace {

const std::string kExamples = KORVANEL_EXAMPLES_DIR;

// depth.y16: 40 x 30 samples of 16 bits, sized by the formats file.
class ViewerCommandsE2e : public ::testing::Test {
 protected:
  void StartWith(const std::vector<std::string>& arguments) {
    session.CopyIn({kExamples + "/Korvanel.fmt", kExamples + "/depth.y16"});
    session.AppendIni("[gui]\ndef_zoom = 1\n");
    ASSERT_TRUE(session.Start(arguments));
    window = session.FindWindow();
    ASSERT_FALSE(window.empty()) << session.Output() << Shell("xdotool search --name '.*' getwindowname %@").output;
  }
  bool WaitForFile(const std::string& name, size_t size) {
    return WaitFor([&] { return session.ReadFile(name).size() == size; }, kExitLimit);
  }
  void Exit() {
    ASSERT_TRUE(session.Keys(window, {"alt+f", "x"}));
    EXPECT_EQ(session.WaitExit(), std::optional<int>(0)) << session.Output();
  }

  ViewerSession session;
  std::string window;
};

TEST_F(ViewerCommandsE2e, SavePhaseAndPngExportWriteBesideTheImage) {
  StartWith({"depth.y16"});
  const std::string source = session.ReadFile("depth.y16");
  ASSERT_EQ(source.size(), 40u * 30 * 2);
  // b1: the original packing, so the bytes are the file's own.
  ASSERT_TRUE(session.Keys(window, {"s", "b", "1"}));
  ASSERT_TRUE(WaitForFile("depth.40x30.y16", source.size())) << session.Output();
  EXPECT_EQ(session.ReadFile("depth.40x30.y16"), source);

  ASSERT_TRUE(session.Keys(window, {"shift+s"}));
  QImage png;
  EXPECT_TRUE(WaitFor([&] { return png.load(QString::fromStdString((session.Dir().path() / "depth.png").string())); },
                      kExitLimit));
  EXPECT_EQ(png.size(), QSize(40, 30));
  Exit();
}

TEST_F(ViewerCommandsE2e, CtrlCPutsThePngOfTheRoiOnTheClipboard) {
  StartWith({"depth.y16", "-roi", "2,3,10x5"});
  // Away from the tab, where Ctrl+C would copy the path instead.
  ASSERT_EQ(Shell("timeout 10 xdotool mousemove --window " + window + " 300 400").status, 0);
  ASSERT_TRUE(session.Keys(window, {"ctrl+c"}));
  // The clipboard lives in the program: read it before it exits.
  ASSERT_TRUE(WaitFor([&] {
    return Shell("timeout 5 xclip -selection clipboard -t TARGETS -o 2>/dev/null").output.find("image/png") !=
           std::string::npos;
  }, kExitLimit));
  const std::string file = (session.Dir().path() / "clip.png").string();
  ASSERT_EQ(Shell("timeout 5 xclip -selection clipboard -t image/png -o > " + ShellQuote(file)).status, 0);
  QImage copied(QString::fromStdString(file));
  EXPECT_EQ(copied.size(), QSize(10, 5));
  Exit();
}

}  // namespace
}  // namespace korvanel::test
