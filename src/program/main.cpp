// Entry point and composition root: builds the application state, parses the
// command line, and either runs it without a window (-q), prints help or
// parser errors, or starts the viewer. This is the one file of the program
// that reaches up into ui/: everything else lives in the libraries so that
// tests and benchmarks link the same code.
#include <cstdio>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/batch_executor.h"
#include "app/command_line.h"
#include "app/configuration.h"
#include "app/console_feedback.h"
#include "app/feedback_relay.h"
#include "app/manual_pages.h"
#include "ui/qt/viewer_app.h"

namespace {

constexpr int kExitFailed = 255;

void PrintLines(const std::vector<std::string>& lines) {
  for (const std::string& line : lines) std::printf("%s\n", line.c_str());
}

}  // namespace

int main(int argc, char** argv) {
  using namespace korvanel;
  // Console output goes out as it is written, interleaved with the program's
  // own messages in order.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  CConsoleFeedback console;
  // The window takes the feedback over once it exists.
  CFeedbackRelay feedback(console);
  // Reads "Korvanel.ini" beside the executable, then the formats file.
  AppState app(feedback, GetConfiguration());

  const std::vector<std::string> arguments(argv + 1, argv + argc);
  ParseResult parsed;
  if (!arguments.empty()) parsed = ParseArguments(arguments);
  if (!parsed.errors.empty()) {
    PrintLines(parsed.errors);
    return kExitFailed;
  }
  if (parsed.help == HelpRequest::Short) {
    std::fputs(ShortUsageText().c_str(), stdout);
    return 0;
  }
  if (parsed.help == HelpRequest::Full) {
    std::fputs(Manual().Manual().c_str(), stdout);
    return 0;
  }
  if (!parsed.quit) return RunViewer(app, feedback, parsed.commands, argc, argv);

  app.SetConsoleMode(true);
  const bool ok = RunBatchCommands(app, parsed.commands);
  app.SetConsoleMode(false);
  app.CloseAllImages();
  return ok ? 0 : kExitFailed;
}
