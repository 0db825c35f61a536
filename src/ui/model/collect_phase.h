#pragma once

// Compare collecting ("c", Actions > Compare start). Characters keep their
// meaning while it runs: the HK characters reach the registry, which adds
// the image to the party being gathered, and the last one again starts
// comparing. "c" again ends it: with nothing collected it compares every
// image of the focus image's size ("c" twice is "C"), with two or more it
// compares them, with one it only stops collecting. The phase is over once
// the registry stops collecting.

#include <string>

#include "ui/model/input_phase.h"

namespace korvanel {

class AppState;

class CCollectPhase final : public IInputPhase {
 public:
  explicit CCollectPhase(AppState& app) : app_(app) {}

  InputPhaseKind Kind() const override { return InputPhaseKind::Collect; }
  // "Collecting images to compare: " and the HK ids collected so far.
  std::string Prompt() const override;
  bool TakesCharacters() const override { return false; }
  PhaseStep OnChar(char32_t) override { return {}; }
  // Esc or a click: collecting stops, a running comparison stays.
  void Cancel() override;

  // Starts collecting in the registry.
  void Begin();
  // "c" while collecting.
  void EndByKey();

 private:
  AppState& app_;
};

// "C": collect every image of the focus image's size at once.
void CollectAllLike(AppState& app);

}  // namespace korvanel
