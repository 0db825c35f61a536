// Entry point: builds the application state, parses the command line and
// runs it. Everything else lives in korvanel_core so that tests and
// benchmarks link the same code. Until the viewer exists every run is a
// window-less batch run.
#include <cstdio>
#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/batch_executor.h"
#include "app/command_line.h"
#include "app/configuration.h"
#include "app/console_feedback.h"
#include "app/manual_pages.h"

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
  // Reads "Korvanel.ini" beside the executable, then the formats file.
  AppState app(console, GetConfiguration());

  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments.empty()) {
    std::fputs(ShortUsageText().c_str(), stdout);
    return 0;
  }
  const ParseResult parsed = ParseArguments(arguments);
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
  app.SetConsoleMode(true);
  const bool ok = RunBatchCommands(app, parsed.commands);
  app.SetConsoleMode(false);
  app.CloseAllImages();
  return ok ? 0 : kExitFailed;
}
