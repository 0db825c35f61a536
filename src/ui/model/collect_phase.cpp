#include "ui/model/collect_phase.h"

#include "app/app_state.h"

namespace korvanel {

std::string CCollectPhase::Prompt() const {
  std::string text = "Collecting images to compare: ";
  for (size_t index : app_.Collected()) {
    if (index < app_.Images().Count()) text += "[" + std::to_string(app_.Images().At(index).hk_id) + "] ";
  }
  return text;
}

void CCollectPhase::Begin() { app_.BeginCollecting(); }

void CCollectPhase::EndByKey() {
  const std::vector<size_t>& collected = app_.Collected();
  if (collected.empty()) {
    app_.CollectForCompare(kNoIndex);
  } else if (collected.size() > 1) {
    app_.CollectForCompare(collected.back());  // as the last key again
  } else {
    app_.EndCollecting();
  }
}

void CCollectPhase::Cancel() { app_.EndCollecting(); }

void CollectAllLike(AppState& app) {
  app.BeginCollecting();
  app.CollectForCompare(kNoIndex);
}

}  // namespace korvanel
