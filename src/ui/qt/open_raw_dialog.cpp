#include "ui/qt/open_raw_dialog.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/model/open_raw_image_manager.h"
#include "ui/qt/dialog_support.h"
#include "ui/qt/format_choice_buttons.h"
#include "ui/qt/history_combo.h"

namespace korvanel {

COpenRawDialog::COpenRawDialog(AppState& app, COpenRawImageManager& manager, std::string_view path,
                               QWidget* parent)
    : QDialog(parent), app_(app), manager_(manager) {
  setWindowTitle(QString("Open raw image %1").arg(QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()))));
  width_ = HistoryField(app.EditHistory(), kOpenRawWidthTag, "width", manager.width_text, this);
  height_ = HistoryField(app.EditHistory(), kOpenRawHeightTag, "height", manager.height_text, this);
  offset_ = HistoryField(app.EditHistory(), kOpenRawOffsetTag, "offset", manager.offset_text, this);
  direct_ = HistoryField(app.EditHistory(), kOpenRawExpressionTag, "direct_expression", manager.direct_expression, this);
  choices_ = new CFormatChoiceButtons(manager.choices, this);
  ascii_ = NamedCheckBox("ASCII (CSV) file", "ascii", manager.ascii, this);
  generated_ = new QLabel(this);
  generated_->setObjectName("generated_expression");

  auto* fields = new QFormLayout;
  fields->addRow("Width:", width_);
  fields->addRow("Height:", height_);
  fields->addRow("Offset:", offset_);
  fields->addRow("Direct expression:", direct_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(fields);
  layout->addWidget(choices_);
  layout->addWidget(ascii_);
  layout->addWidget(generated_);
  layout->addWidget(OkCancelButtons(this));
  connect(choices_, &CFormatChoiceButtons::Changed, this, &COpenRawDialog::ShowGenerated);
  ShowGenerated();
}

void COpenRawDialog::ShowGenerated() {
  manager_.choices = choices_->Choices();
  generated_->setText(QString::fromStdString(manager_.GeneratedLabel()));
}

void COpenRawDialog::StoreFields() {
  manager_.width_text = width_->Text();
  manager_.height_text = height_->Text();
  manager_.offset_text = offset_->Text();
  manager_.direct_expression = direct_->Text();
  manager_.choices = choices_->Choices();
  manager_.ascii = ascii_->isChecked();
}

void COpenRawDialog::accept() {
  StoreFields();
  if (ShowRefusal(app_, manager_.Accept(answer_))) return;
  manager_.RecordEditHistory(app_.EditHistory());
  app_.StoreEditHistory();
  QDialog::accept();
}

bool COpenRawDialog::Ask(OpenRawAnswer& answer) {
  if (exec() != QDialog::Accepted) return false;
  answer = answer_;
  return true;
}

}  // namespace korvanel
