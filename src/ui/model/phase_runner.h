#pragma once

// The input phase that is running, if any (collecting images to compare,
// the save choice, jump and find): starting one, feeding it keys,
// characters and pasted text, and ending or cancelling it.

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "ui/model/input_phase.h"
#include "ui/model/keys.h"

namespace korvanel {

class AppState;
class CFindJump;
class CStatusPresenter;
class CViewSet;
class IViewerHost;
struct ViewerState;

inline constexpr std::string_view kPhaseBusyText =
    "Another input is in progress: finish it, or press Esc to cancel it";

struct PhaseParts {
  AppState& app;
  IViewerHost& host;
  CViewSet& views;
  CStatusPresenter& status;
  CFindJump& find_jump;
  ViewerState& state;
};

class CPhaseRunner {
 public:
  explicit CPhaseRunner(const PhaseParts& parts) : p_(parts) {}

  InputPhaseKind Active() const { return phase_ ? phase_->Kind() : InputPhaseKind::None; }
  // Starts `phase` unless one is active; then `refusal` shows as a status
  // message and the new phase is dropped.
  bool Start(std::unique_ptr<IInputPhase> phase, std::string_view refusal);
  // Esc or a click: the phase undoes what is half done and the cancel text
  // shows. False when no phase was active.
  bool Cancel();
  // A key-down the phase claims; false lets the key through.
  bool Key(const KeyInput& key);
  // A character for a phase that takes them; false when none does.
  bool Char(char32_t ch);
  // Ctrl+V: the clipboard's text into the phase.
  void Paste();
  // The prompt while the phase waits, or nothing without a phase.
  std::optional<std::string> Prompt() const;
  // Collecting runs in the registry: its phase is over when that stops.
  void DropEnded();

  // c: collecting starts, or ends when it runs. C: every image like the FI.
  void CompareStart();
  void CompareAll();
  void StartSave();
  // J starts the jump phase, or ends a running one as Esc would.
  void ToggleJump();
  // The menu's jump and find items start their phase when it is not running.
  void FeedJump(char32_t ch);
  void PasteInto(InputPhaseKind kind);
  void StartFind() { Ensure(InputPhaseKind::Find); }

 private:
  void Apply(PhaseStep step);
  bool Ensure(InputPhaseKind kind);

  PhaseParts p_;
  std::unique_ptr<IInputPhase> phase_;
};

}  // namespace korvanel
