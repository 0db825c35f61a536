#pragma once

// Starts the window. main() calls this for every run that is not a
// window-less one (-q), help or a parser error; those never create the
// widget application.

#include <vector>

namespace korvanel {

class AppState;
class CFeedbackRelay;
struct ParsedCommand;

inline constexpr const char* kNoDisplayText = "korvanel: no display; use -q to run without a window\n";

// True when the environment names a display Qt can use: DISPLAY,
// WAYLAND_DISPLAY or an explicit QT_QPA_PLATFORM (offscreen counts).
bool DisplayAvailable();

// Shows the window, runs `commands` with it (all or nothing: the first
// failure tears down with status 255), then runs the event loop until the
// window goes. Without a display it prints kNoDisplayText and returns 255.
// `relay` reaches the window while it exists and the console before and after.
int RunViewer(AppState& app, CFeedbackRelay& relay, const std::vector<ParsedCommand>& commands, int& argc,
              char** argv);

}  // namespace korvanel
