#include "ui/qt/filter_dialog.h"

#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

#include "ui/model/filter_colors_manager.h"
#include "ui/qt/dialog_support.h"
#include "ui/qt/history_combo.h"

namespace korvanel {

CFilterDialog::CFilterDialog(AppState& app, CFilterColorsManager& manager, QWidget* parent)
    : QDialog(parent), app_(app), manager_(manager) {
  setWindowTitle("Filter Colors");
  expression_ = new CHistoryCombo(app.EditHistory(), kFilterExpressionTag, this);
  expression_->setObjectName("filter_expression");
  expression_->SetText(manager.expression);
  expression_->lineEdit()->setPlaceholderText("0-100,^99;200-*;*");
  negation_ = new CHistoryCombo(app.EditHistory(), kNegationColorTag, this);
  negation_->setObjectName("negation_color");
  negation_->SetText(manager.negation);
  negation_->lineEdit()->setPlaceholderText("0 or 16,128,128");

  apply_to_all_ = NamedCheckBox("Apply on all images of the same family (comparison mode)", "apply_to_all",
                                manager.apply_to_all, this);
  apply_to_new_ = NamedCheckBox("Apply to a new image", "apply_to_new", manager.apply_to_new, this);
  all_3_must_pass_ = NamedCheckBox("Pixel is valid if all 3 components are in range", "all_3_must_pass",
                                   manager.all_3_must_pass, this);
  separate_ = NamedCheckBox("Separate to image per component", "separate_components",
                            manager.separate_components, this);

  auto* fields = new QFormLayout;
  fields->addRow("Filter (per component, ';' separated):", expression_);
  fields->addRow("Negate color:", negation_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(fields);
  for (QCheckBox* box : {apply_to_all_, apply_to_new_, all_3_must_pass_, separate_}) layout->addWidget(box);
  layout->addWidget(OkCancelButtons(this));
}

void CFilterDialog::StoreFields() {
  manager_.expression = expression_->Text();
  manager_.negation = negation_->Text();
  manager_.apply_to_all = apply_to_all_->isChecked();
  manager_.apply_to_new = apply_to_new_->isChecked();
  manager_.all_3_must_pass = all_3_must_pass_->isChecked();
  manager_.separate_components = separate_->isChecked();
}

void CFilterDialog::accept() {
  StoreFields();
  if (ShowRefusal(app_, manager_.Apply(app_))) return;
  QDialog::accept();
}

}  // namespace korvanel
