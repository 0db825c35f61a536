#include "ui/qt/convert_dialog.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/model/convert_raw_manager.h"
#include "ui/qt/dialog_support.h"
#include "ui/qt/format_choice_buttons.h"
#include "ui/qt/history_combo.h"

namespace korvanel {

CConvertDialog::CConvertDialog(AppState& app, CConvertRawManager& manager, QWidget* parent)
    : QDialog(parent), app_(app), manager_(manager) {
  const ImageRecord& source = app.Images().At(app.FocusIndex());
  source.image->GetSize(source_width_, source_height_);
  setWindowTitle(QString::fromStdString(CConvertRawManager::Title(source.display_name)));

  direct_ = HistoryField(app.EditHistory(), kConvertDirectTag, "direct_expression", manager.direct_expression, this);
  choices_ = new CFormatChoiceButtons(manager.choices, this);
  generated_ = new QLabel(this);
  generated_->setObjectName("generated_expression");
  custom_transform_ = NamedCheckBox("Custom color transform", "custom_transform", manager.custom_transform, this);
  auto* rows = new QFormLayout;
  for (size_t i = 0; i < rows_.size(); ++i) {
    row_labels_[i] = new QLabel(this);
    row_labels_[i]->setObjectName(QString("row_label_%1").arg(i + 1));
    rows_[i] = HistoryField(app.EditHistory(), kConvertTransformTags[i], "transform_row_" + std::to_string(i + 1),
                     manager.transform_rows[i], this);
    rows->addRow(row_labels_[i], rows_[i]);
  }

  resize_ = NamedCheckBox("Resize", "resize", manager.resize, this);
  size_ = HistoryField(app.EditHistory(), kConvertSizeTag, "new_size", manager.size_text, this);
  size_->lineEdit()->setPlaceholderText(kConvertSizeHint);
  auto* source_size = new QPushButton(QString::fromStdString(CConvertRawManager::SourceSizeText(source_width_, source_height_)), this);
  source_size->setObjectName("source_size");
  new_size_ = new QLabel(this);
  new_size_->setObjectName("new_size_line");
  offset_ = HistoryField(app.EditHistory(), kConvertOffsetTag, "base_offset", manager.offset_text, this);
  tiled_ = NamedCheckBox("Tiled", "tiled", manager.tiled, this);

  auto* fields = new QFormLayout;
  fields->addRow("Direct expression:", direct_);
  auto* size_row = new QHBoxLayout;
  size_row->addWidget(size_, 1);
  size_row->addWidget(source_size);
  auto* resize_fields = new QFormLayout;
  resize_fields->addRow("New size (width;height):", size_row);
  resize_fields->addRow("", new_size_);
  resize_fields->addRow("Base offset (x,y):", offset_);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(fields);
  layout->addWidget(choices_);
  layout->addWidget(generated_);
  layout->addWidget(custom_transform_);
  layout->addLayout(rows);
  layout->addWidget(resize_);
  layout->addLayout(resize_fields);
  layout->addWidget(tiled_);
  layout->addWidget(OkCancelButtons(this));

  connect(choices_, &CFormatChoiceButtons::Changed, this, &CConvertDialog::Refresh);
  connect(direct_, &QComboBox::editTextChanged, this, &CConvertDialog::Refresh);
  connect(size_, &QComboBox::editTextChanged, this, &CConvertDialog::Refresh);
  connect(source_size, &QPushButton::clicked, this, [this, source_size] { size_->setEditText(source_size->text()); });
  Refresh();
}

void CConvertDialog::Refresh() {
  StoreFields();
  generated_->setText(QString::fromStdString(manager_.GeneratedLabel()));
  const std::array<std::string, 3> labels = manager_.RowLabels();
  for (size_t i = 0; i < labels.size(); ++i) row_labels_[i]->setText(QString::fromStdString(labels[i]));
  new_size_->setText(QString::fromStdString(manager_.NewSizeLine(source_width_, source_height_)));
}

void CConvertDialog::StoreFields() {
  manager_.direct_expression = direct_->Text();
  manager_.choices = choices_->Choices();
  manager_.custom_transform = custom_transform_->isChecked();
  for (size_t i = 0; i < rows_.size(); ++i) manager_.transform_rows[i] = rows_[i]->Text();
  manager_.resize = resize_->isChecked();
  manager_.size_text = size_->Text();
  manager_.offset_text = offset_->Text();
  manager_.tiled = tiled_->isChecked();
}

void CConvertDialog::accept() {
  StoreFields();
  if (ShowRefusal(app_, manager_.Apply(app_))) return;
  QDialog::accept();
}

}  // namespace korvanel
