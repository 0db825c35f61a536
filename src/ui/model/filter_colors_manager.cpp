#include "ui/model/filter_colors_manager.h"

#include "app/app_state.h"

namespace korvanel {

CFilterColorsManager::CFilterColorsManager(const ConfigDialogFilter& defaults)
    : expression(defaults.def_filter),
      negation(defaults.def_neg),
      apply_to_all(defaults.apply_to_all),
      apply_to_new(defaults.apply_to_new),
      all_3_must_pass(defaults.all_3_must_pass),
      separate_components(defaults.separate_comp) {}

FilterCommand CFilterColorsManager::Request(const AppState& app) const {
  FilterCommand command;
  command.expression = expression;
  command.negation = negation;
  command.all_components = all_3_must_pass;
  // Separating works on the focus image alone, so it wins over the others;
  // a new image is one image, so it wins over the whole party.
  if (separate_components) {
    command.target = FilterTarget::SeparateComponents;
  } else if (apply_to_new) {
    command.target = FilterTarget::NewImage;
  } else if (apply_to_all && app.CompareMode()) {
    command.target = FilterTarget::CompareFamily;
  }
  return command;
}

DialogResult CFilterColorsManager::Run(AppState& app, FilterCommand command) {
  if (app.FocusIndex() >= app.Images().Count()) return std::nullopt;
  command.index = app.FocusIndex();
  const FilterResult result = RunFilterCommand(app, command);
  if (result.outcome.done) return std::nullopt;
  // A quiet failure (an abort) was told on the status line: nothing to show,
  // but the dialog stays so the user can try again.
  return DialogMessage{result.outcome.text, result.outcome.caption};
}

DialogResult CFilterColorsManager::Apply(AppState& app) {
  if (app.FocusIndex() >= app.Images().Count()) return std::nullopt;
  const FilterCommand command = Request(app);
  DialogResult result = Run(app, command);
  if (result) return result;
  last_ = command;
  RecordEditHistory(app.EditHistory());
  app.StoreEditHistory();
  return std::nullopt;
}

DialogResult CFilterColorsManager::Reapply(AppState& app) {
  if (!last_) return std::nullopt;
  FilterCommand command = *last_;
  if (command.target == FilterTarget::CompareFamily && !app.CompareMode()) command.target = FilterTarget::Image;
  return Run(app, command);
}

void CFilterColorsManager::RecordEditHistory(CEditHistory& history) const {
  history.Add(kFilterExpressionTag, expression);
  history.Add(kNegationColorTag, negation);
}

}  // namespace korvanel
