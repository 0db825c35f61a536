#include "ui/model/jump_phase.h"

namespace korvanel {

std::optional<PhaseStep> ClaimEntryKey(const KeyInput& key, Key own_key) {
  const bool passes = key.key == Key::Escape || key.key == Key::F1 || key.key == own_key ||
                      (key.key == Key::V && key.mods.ctrl);
  if (passes) return std::nullopt;
  return PhaseStep{};
}

PhaseStep CJumpPhase::OnChar(char32_t ch) {
  return Apply(entry_.OnChar(ch, host_.JumpTarget(), host_.JumpHistory()));
}

std::optional<PhaseStep> CJumpPhase::OnKey(const KeyInput& key) {
  return ClaimEntryKey(key, Key::J);
}

PhaseStep CJumpPhase::OnPaste(std::string_view text) { return Apply(entry_.Paste(text)); }

PhaseStep CJumpPhase::Apply(const JumpOutcome& outcome) {
  using Kind = JumpOutcome::Kind;
  switch (outcome.kind) {
    case Kind::Continue: return {};
    case Kind::Notice: return {false, outcome.message};
    case Kind::Fail: return {true, outcome.message};
    case Kind::Visit:
      host_.JumpTo(outcome.target);
      return {};
    case Kind::Jump:
      host_.JumpTo(outcome.target);
      return {true, {}};
  }
  return {};
}

}  // namespace korvanel
