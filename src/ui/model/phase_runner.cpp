#include "ui/model/phase_runner.h"

#include "app/app_state.h"
#include "ui/model/collect_phase.h"
#include "ui/model/find_jump_controller.h"
#include "ui/model/save_phase.h"
#include "ui/model/status_presenter.h"
#include "ui/model/view_set.h"
#include "ui/model/viewer_host.h"
#include "ui/model/viewer_state.h"

namespace korvanel {

bool CPhaseRunner::Start(std::unique_ptr<IInputPhase> phase, std::string_view refusal) {
  if (phase_ || !phase) {
    p_.status.Say(refusal);
    return false;
  }
  phase_ = std::move(phase);
  p_.status.Drop();  // the prompt replaces an older message
  return true;
}

bool CPhaseRunner::Cancel() {
  if (!phase_) return false;
  std::unique_ptr<IInputPhase> phase = std::move(phase_);
  phase->Cancel();
  p_.status.Say(kPhaseCanceledText);
  // Back to the FI as it was before the phase.
  p_.state.base_dirty = true;
  p_.views.MarkLayoutDirty();
  return true;
}

void CPhaseRunner::Apply(PhaseStep step) {
  if (step.done) phase_.reset();
  if (!step.message.empty()) {
    p_.status.Say(step.message);
    return;
  }
  // Typing shows the prompt again; a finished phase leaves what its work
  // reported on show.
  if (phase_) p_.status.Drop();
}

bool CPhaseRunner::Key(const KeyInput& key) {
  if (!phase_) return false;
  std::optional<PhaseStep> step = phase_->OnKey(key);
  if (!step) return false;
  Apply(std::move(*step));
  return true;
}

bool CPhaseRunner::Char(char32_t ch) {
  if (!phase_ || !phase_->TakesCharacters()) return false;
  Apply(phase_->OnChar(ch));
  return true;
}

void CPhaseRunner::Paste() {
  if (phase_) Apply(phase_->OnPaste(p_.host.ClipboardText()));
}

std::optional<std::string> CPhaseRunner::Prompt() const {
  if (!phase_) return std::nullopt;
  return phase_->Prompt();
}

void CPhaseRunner::DropEnded() {
  if (Active() == InputPhaseKind::Collect && !p_.app.Collecting()) phase_.reset();
}

void CPhaseRunner::CompareStart() {
  if (Active() == InputPhaseKind::Collect) {
    static_cast<CCollectPhase&>(*phase_).EndByKey();
    DropEnded();
    return;
  }
  auto phase = std::make_unique<CCollectPhase>(p_.app);
  CCollectPhase& collect = *phase;
  if (Start(std::move(phase), kPhaseBusyText)) collect.Begin();
}

void CPhaseRunner::CompareAll() {
  CollectAllLike(p_.app);
  DropEnded();
}

void CPhaseRunner::StartSave() { Start(std::make_unique<CSavePhase>(p_.app), kPhaseBusyText); }

bool CPhaseRunner::Ensure(InputPhaseKind kind) {
  if (Active() == kind) return true;
  if (kind == InputPhaseKind::Jump) {
    return Start(std::make_unique<CJumpPhase>(p_.find_jump), "Can't jump to coordinate while in other action");
  }
  return Start(std::make_unique<CFindPhase>(p_.find_jump), "Can't find pixel while in other action");
}

void CPhaseRunner::ToggleJump() {
  if (Active() == InputPhaseKind::Jump) {
    Cancel();
    return;
  }
  Ensure(InputPhaseKind::Jump);
}

void CPhaseRunner::FeedJump(char32_t ch) {
  if (Ensure(InputPhaseKind::Jump)) Apply(phase_->OnChar(ch));
}

void CPhaseRunner::PasteInto(InputPhaseKind kind) {
  if (Ensure(kind)) Paste();
}

}  // namespace korvanel
