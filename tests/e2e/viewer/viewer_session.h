#pragma once

// Drives the real program's window on an X server (Xvfb in the tests):
// starts it in its own folder, finds its window, types keys with xdotool,
// takes screenshots with ImageMagick's import and waits for it to end.
// Every wait is bounded; a case adds its own steps on top of these.

#include <gtest/gtest.h>

#include <QImage>
#include <QPoint>
#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "app/app_state.h"
#include "image/display_rendition.h"
#include "support/recording_feedback.h"
#include "support/program_runner.h"
#include "support/temp_dir.h"

namespace korvanel::test {

using std::chrono::milliseconds;

inline constexpr milliseconds kExitLimit{10000};

struct ShellResult {
  int status = -1;
  std::string output;  // standard output, trailing line feed removed
};

// Runs `command` with /bin/sh and collects its standard output.
ShellResult Shell(const std::string& command);

// Polls `ready` until it holds or `limit` has passed; true when it held.
bool WaitFor(const std::function<bool()>& ready, milliseconds limit);

// The colour of one screenshot pixel as 0xRRGGBB (0 outside the image).
uint32_t PixelAt(const QImage& image, int x, int y);

// The colour of one rendition pixel as 0xRRGGBB.
uint32_t RenditionColour(const DisplayRendition& rendition, uint32_t x, uint32_t y);
// Where the whole rendition appears replicated k times, if anywhere.
std::optional<QPoint> FindPicture(const QImage& shot, const DisplayRendition& rendition, uint32_t k);

class ViewerSession {
 public:
  // `ini` becomes the program's Korvanel.ini; the default sends the logs to
  // the session folder.
  explicit ViewerSession(const std::string& ini = "");
  ~ViewerSession();
  ViewerSession(const ViewerSession&) = delete;
  ViewerSession& operator=(const ViewerSession&) = delete;

  const TempDir& Dir() const { return dir_; }
  // Copies files into the session folder, keeping their names.
  void CopyIn(const std::vector<std::string>& paths) const;
  // Adds lines to the program's Korvanel.ini.
  void AppendIni(const std::string& lines) const;

  // Starts the program with `arguments` on the test's display.
  bool Start(const std::vector<std::string>& arguments);
  // The id of the visible window whose name matches `title` (a regular
  // expression), waited for up to 10 s; empty when none showed.
  std::string FindWindow(const std::string& title = "^Korvanel$") const;
  // Focuses `window` and types the xdotool key names in order.
  bool Keys(const std::string& window, const std::vector<std::string>& keys) const;
  // The window's content as the X server shows it; null on failure.
  QImage Screenshot(const std::string& window) const;
  // The exit status once the program ended, or nothing after `limit`.
  std::optional<int> WaitExit(milliseconds limit = kExitLimit);
  // What the program wrote to standard output and error so far.
  std::string Output() const;
  // A file of the session folder ("<missing>" when absent).
  std::string ReadFile(const std::string& name) const;

 private:
  TempDir dir_;
  ProgramRunner runner_;
  pid_t pid_ = -1;
};

// The example gradient opened at ZF 1, found on the screen, beside the
// reference rendition the screen is compared with.
class ViewerGradient : public ::testing::Test {
 protected:
  void SetUp() override;
  // Closes the window with File/Exit and expects a clean exit.
  void Exit();

  RecordingFeedback feedback;
  AppState reference{feedback};
  const DisplayRendition* rendition = nullptr;
  ViewerSession session;
  std::string window;
  QPoint origin;  // the picture's top-left corner in the window
};

}  // namespace korvanel::test
