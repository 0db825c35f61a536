#pragma once

// The find-pixel input phase: typed characters and pastes go to the find
// entry; a space searches the host's image and ends the phase.

#include <string>

#include "ui/model/find_entry.h"
#include "ui/model/input_phase.h"

namespace korvanel {

// What the find phase needs of the viewer.
class IFindHost {
 public:
  virtual ~IFindHost() = default;
  virtual FindContext FindTarget() const = 0;
  virtual CFindHistory& FindHistory() = 0;
  // Searches for `value` and returns the message that tells the result.
  virtual std::string FindValue(const PixelValue& value) = 0;
  virtual void ClearFindMarks() = 0;
};

class CFindPhase final : public IInputPhase {
 public:
  explicit CFindPhase(IFindHost& host) : host_(host) {}

  InputPhaseKind Kind() const override { return InputPhaseKind::Find; }
  std::string Prompt() const override { return entry_.Prompt(); }
  PhaseStep OnChar(char32_t ch) override;
  std::optional<PhaseStep> OnKey(const KeyInput& key) override;
  PhaseStep OnPaste(std::string_view text) override;

 private:
  IFindHost& host_;
  CFindEntry entry_;
};

}  // namespace korvanel
