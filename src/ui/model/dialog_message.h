#pragma once

// What a dialog's state manager hands its dialog when an apply fails: the
// box's text and title. The dialog shows it and stays open.

#include <optional>
#include <string>

namespace korvanel {

// An empty title means the user was told already (an abort on the status
// line): no box, but the dialog still stays open.
struct DialogMessage {
  std::string text;
  std::string title;
  friend bool operator==(const DialogMessage&, const DialogMessage&) = default;
};

// Empty when the apply went through and the dialog may close.
using DialogResult = std::optional<DialogMessage>;

}  // namespace korvanel
