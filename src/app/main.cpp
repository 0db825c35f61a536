// Entry point: builds the application state and hands over. Everything else
// lives in korvanel_core so that tests and benchmarks link the same code.
#include <cstdio>

#include "app/app_state.h"
#include "app/app_version.h"
#include "app/configuration.h"
#include "app/console_feedback.h"

int main(int argc, char** argv) {
  (void)argv;
  korvanel::CConsoleFeedback console;
  // The first call reads "Korvanel.ini" beside the executable.
  korvanel::AppState app(console, korvanel::GetConfiguration());
  std::printf("%s %s - raw image viewer and batch processor\n", korvanel::kAppName,
              korvanel::kAppVersion);
  std::printf("Usage: korvanel [-q] [options] [file ...]\n");
  app.CloseAllImages();
  return argc < 0 ? 255 : 0;
}
