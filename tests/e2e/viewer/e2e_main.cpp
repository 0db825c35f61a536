// The viewer's end-to-end tests need an X server and the tools that drive it;
// without them the run is skipped (exit 77), not failed.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

#include "e2e/viewer/viewer_session.h"

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  const char* display = std::getenv("DISPLAY");
  if (display == nullptr || display[0] == '\0') {
    std::puts("skipped: no X display (run under xvfb-run)");
    return 77;
  }
  for (const char* tool : {"xdotool", "import"}) {
    if (korvanel::test::Shell(std::string("command -v ") + tool + " >/dev/null").status != 0) {
      std::printf("skipped: %s is not installed\n", tool);
      return 77;
    }
  }
  return RUN_ALL_TESTS();
}
