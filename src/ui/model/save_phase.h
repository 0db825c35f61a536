#pragma once

// The save phase ("s", File > Save via Command): two keys choose how to save
// (see save_choice.h), then the focus image, or every party image, is saved
// that way. A key that fits neither step keeps the phase and its prompt; Esc
// or a click cancels it.

#include <optional>
#include <string>
#include <string_view>

#include "ui/model/input_phase.h"
#include "ui/model/save_choice.h"

namespace korvanel {

class AppState;

class CSavePhase final : public IInputPhase {
 public:
  explicit CSavePhase(AppState& app) : app_(app) {}

  InputPhaseKind Kind() const override { return InputPhaseKind::Save; }
  std::string Prompt() const override;
  PhaseStep OnChar(char32_t ch) override;

 private:
  AppState& app_;
  std::optional<std::string_view> group_;
};

}  // namespace korvanel
