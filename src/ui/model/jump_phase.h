#pragma once

// The jump-to-coordinate input phase: typed characters and pastes go to the
// jump entry, and the outcomes become jumps on the host's view.

#include <functional>
#include <string>

#include "ui/model/input_phase.h"
#include "ui/model/jump_entry.h"

namespace korvanel {

// What the jump phase needs of the viewer.
class IJumpHost {
 public:
  virtual ~IJumpHost() = default;
  // The image the coordinates refer to, as it is now.
  virtual JumpContext JumpTarget() const = 0;
  virtual CCoordinateHistory& JumpHistory() = 0;
  // Centres the view on `pixel`, records it and marks it.
  virtual void JumpTo(PixelPoint pixel) = 0;
};

class CJumpPhase final : public IInputPhase {
 public:
  explicit CJumpPhase(IJumpHost& host) : host_(host) {}

  InputPhaseKind Kind() const override { return InputPhaseKind::Jump; }
  std::string Prompt() const override { return entry_.Prompt(); }
  PhaseStep OnChar(char32_t ch) override;
  std::optional<PhaseStep> OnKey(const KeyInput& key) override;
  PhaseStep OnPaste(std::string_view text) override;

 private:
  PhaseStep Apply(const JumpOutcome& outcome);

  IJumpHost& host_;
  CJumpEntry entry_;
};

// While jump or find entry runs, only Esc, F1, Ctrl+V and `own_key` (J
// ends the jump phase) keep their key meaning; every other key is left to
// its character, which the phase takes.
std::optional<PhaseStep> ClaimEntryKey(const KeyInput& key, Key own_key);

}  // namespace korvanel
