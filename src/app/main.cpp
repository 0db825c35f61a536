// Entry point: builds the application and hands over. Everything else lives in
// korvanel_core so that tests and benchmarks link the same code.
#include <cstdio>

#include "app/app_version.h"

int main(int argc, char** argv) {
  (void)argv;
  std::printf("%s %s - raw image viewer and batch processor\n", korvanel::kAppName,
              korvanel::kAppVersion);
  std::printf("Usage: korvanel [-q] [options] [file ...]\n");
  return argc < 0 ? 255 : 0;
}
