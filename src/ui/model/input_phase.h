#pragma once

// A multi-key input phase: compare collecting, the save choice, jump entry
// or find entry. At most one is active. While it is active it may take the
// typed characters (and a few keys) until it completes; Esc or a click in the
// image area cancels it.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "ui/model/keys.h"

namespace korvanel {

enum class InputPhaseKind : uint8_t { None, Collect, Save, Jump, Find };

inline constexpr std::string_view kPhaseCanceledText = "Operation canceled due to user abort";

// What the controller does after the phase took an input.
struct PhaseStep {
  bool done = false;    // the phase is over and is dropped
  std::string message;  // shown as a status message when not empty
};

class IInputPhase {
 public:
  virtual ~IInputPhase() = default;

  virtual InputPhaseKind Kind() const = 0;
  // Status part 0 while the phase waits: its prompt and what was typed.
  // Empty leaves the part to the readout.
  virtual std::string Prompt() const = 0;
  // False for a phase that lets characters take their usual meaning and
  // watches the registry instead (collecting, where digits pick images).
  virtual bool TakesCharacters() const { return true; }
  virtual PhaseStep OnChar(char32_t ch) = 0;
  // A key-down the phase wants before the key table sees it (Tab
  // completion, say); nullopt lets the key through.
  virtual std::optional<PhaseStep> OnKey(const KeyInput& key) {
    (void)key;
    return std::nullopt;
  }
  // Ctrl+V with the clipboard's text.
  virtual PhaseStep OnPaste(std::string_view text) {
    (void)text;
    return {};
  }
  // Esc or a click ends the phase: undo what is half done before the cancel
  // text shows.
  virtual void Cancel() {}
};

}  // namespace korvanel
