#pragma once

// The status bar: the timed message of part 0, and the fields sent to the
// window only when they changed.

#include <string>
#include <string_view>

#include "ui/model/status_bar.h"

namespace korvanel {

class AppState;
class IViewerHost;

class CStatusPresenter {
 public:
  CStatusPresenter(AppState& app, IViewerHost& host) : app_(app), host_(host) {}

  // A status text of the window's own: shown and logged.
  void Say(std::string_view text);
  // Shown in part 0 for 16 ticks of timer 1 (cut at 511 characters).
  void Show(std::string_view text);
  // A prompt replaces an older message.
  void Drop() { message_.showing = false; }
  bool Showing() const { return message_.showing; }
  const std::string& Message() const { return message_.text; }
  // Timer 1: counts the message down; stops the timer once it is gone.
  void Tick();

  // Sends `fields` unless the window shows them already.
  void Present(const StatusFields& fields);
  const StatusFields& Fields() const { return shown_; }

 private:
  AppState& app_;
  IViewerHost& host_;
  StatusMessage message_;
  StatusFields shown_;
  bool presented_ = false;
};

// The four parts of a view, or nothing without one.
struct StatusInputs {
  bool has_view = false;
  ModeFlags modes;
  std::string zoom_text;
  std::string readout;  // part 0: the message, a phase prompt or the readout
};
StatusFields ComposeStatus(const StatusInputs& in);

}  // namespace korvanel
