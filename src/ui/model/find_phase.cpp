#include "ui/model/find_phase.h"

#include "ui/model/jump_phase.h"

namespace korvanel {

PhaseStep CFindPhase::OnChar(char32_t ch) {
  const FindOutcome outcome = entry_.OnChar(ch, host_.FindTarget(), host_.FindHistory());
  using Kind = FindOutcome::Kind;
  switch (outcome.kind) {
    case Kind::Continue: return {};
    case Kind::Notice: return {false, outcome.message};
    case Kind::Fail: return {true, outcome.message};
    case Kind::ClearMarks:
      host_.ClearFindMarks();
      return {};
    case Kind::Search:
      host_.FindHistory().Add(entry_.Input());
      return {true, host_.FindValue(outcome.value)};
  }
  return {};
}

std::optional<PhaseStep> CFindPhase::OnKey(const KeyInput& key) {
  return ClaimEntryKey(key, Key::Unknown);
}

PhaseStep CFindPhase::OnPaste(std::string_view text) {
  const FindOutcome outcome = entry_.Paste(text);
  return {false, outcome.message};
}

}  // namespace korvanel
