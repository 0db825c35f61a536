#pragma once

// What a command of the application hands back: done, or what went wrong as
// a message text and its caption. Commands never decide themselves whether
// to show it; the caller does, and the viewer and the batch executor show it
// the same way (ShowOutcome) or put their own line in its place.

#include <string>

namespace korvanel {

class AppState;

struct CommandOutcome {
  bool done = true;
  std::string text;
  // Empty when the user has been told already (the status line said
  // "Aborted after ..."): nothing is shown, `text` is for log lines only.
  std::string caption;

  static CommandOutcome Done() { return {}; }
  static CommandOutcome Failed(std::string text, std::string caption) {
    return {false, std::move(text), std::move(caption)};
  }
  // A failure with nothing left to tell, or told on the status line as `text`.
  static CommandOutcome FailedQuietly(std::string text = {}) { return {false, std::move(text), {}}; }
};

// Shows a failure's message through the core's message routine; a success or
// a quiet failure shows nothing.
void ShowOutcome(AppState& app, const CommandOutcome& outcome);

}  // namespace korvanel
