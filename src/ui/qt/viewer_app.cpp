#include "ui/qt/viewer_app.h"

#include <QApplication>
#include <QIcon>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "app/app_state.h"
#include "app/batch_executor.h"
#include "app/configuration.h"
#include "app/feedback_relay.h"
#include "ui/qt/main_window.h"

namespace korvanel {
namespace {

constexpr int kExitFailed = 255;

bool EnvironmentNames(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && value[0] != '\0';
}

// Hands the feedback back to the console when the window goes, so that
// teardown messages never reach a destroyed window.
class RelayTarget {
 public:
  RelayTarget(CFeedbackRelay& relay, IUserFeedback& window) : relay_(relay), previous_(relay.Target()) {
    relay_.SetTarget(window);
  }
  ~RelayTarget() { relay_.SetTarget(previous_); }
  RelayTarget(const RelayTarget&) = delete;
  RelayTarget& operator=(const RelayTarget&) = delete;

 private:
  CFeedbackRelay& relay_;
  IUserFeedback& previous_;
};

// Every size the resources hold, so the window manager picks a sharp one.
QIcon WindowIcon() {
  QIcon icon;
  for (int size : {16, 32, 48, 64, 128, 256}) icon.addFile(QString(":/korvanel/icons/korvanel_%1.png").arg(size));
  return icon;
}

}  // namespace

bool DisplayAvailable() {
  return EnvironmentNames("DISPLAY") || EnvironmentNames("WAYLAND_DISPLAY") || EnvironmentNames("QT_QPA_PLATFORM");
}

int RunViewer(AppState& app, CFeedbackRelay& relay, const std::vector<ParsedCommand>& commands, int& argc,
              char** argv) {
  // Qt aborts without a display; a clear line is kinder.
  if (!DisplayAvailable()) {
    std::fputs(kNoDisplayText, stderr);
    return kExitFailed;
  }
  QApplication application(argc, argv);
  QGuiApplication::setDesktopFileName("korvanel");
  QApplication::setWindowIcon(WindowIcon());
  int status = 0;
  {
    CMainWindow window(app, GetConfiguration().Values());
    RelayTarget target(relay, window.Feedback());
    window.show();
    // The commands run with the window on screen, as an interactive user
    // would see them; an argument list is all or nothing.
    QApplication::processEvents();
    if (!commands.empty() && !RunBatchCommands(app, commands)) status = kExitFailed;
    if (status == 0 && window.isVisible()) status = QApplication::exec();
  }
  app.CloseAllImages();
  return status;
}

}  // namespace korvanel
