#include "ui/qt/ruler_settings_dialog.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "ui/model/ruler_settings_manager.h"
#include "ui/qt/dialog_support.h"
#include "ui/qt/history_combo.h"

namespace korvanel {

CRulerSettingsDialog::CRulerSettingsDialog(AppState& app, CRulerSettingsManager& manager,
                                           std::function<DialogResult()> apply, QWidget* parent)
    : QDialog(parent), app_(app), manager_(manager), apply_(std::move(apply)) {
  setWindowTitle("Ruler settings");
  setModal(false);
  screen_pixels_ = new QRadioButton("Spacing in screen pixels", this);
  screen_pixels_->setObjectName("screen_pixels");
  image_pixels_ = new QRadioButton("Spacing and offset in image pixels", this);
  image_pixels_->setObjectName("image_pixels");
  (manager.screen_pixels ? screen_pixels_ : image_pixels_)->setChecked(true);
  screen_spacing_ = HistoryField(app.EditHistory(), kRulerScreenSpacingTag, "screen_spacing", manager.screen_spacing, this);
  image_spacing_ = HistoryField(app.EditHistory(), kRulerImageSpacingTag, "image_spacing", manager.image_spacing, this);
  image_offset_ = HistoryField(app.EditHistory(), kRulerImageOffsetTag, "image_offset", manager.image_offset, this);

  auto* fields = new QFormLayout;
  fields->addRow(screen_pixels_);
  fields->addRow("Screen spacing (x,y):", screen_spacing_);
  fields->addRow(image_pixels_);
  fields->addRow("Image spacing (x,y):", image_spacing_);
  fields->addRow("Image offset (x,y):", image_offset_);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  QPushButton* apply_button = buttons->addButton("Apply changes", QDialogButtonBox::ApplyRole);
  apply_button->setObjectName("apply_changes");
  connect(apply_button, &QPushButton::clicked, this, &CRulerSettingsDialog::ApplyChanges);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::close);
  auto* layout = new QVBoxLayout(this);
  layout->addLayout(fields);
  layout->addWidget(buttons);
}

void CRulerSettingsDialog::StoreFields() {
  manager_.screen_spacing = screen_spacing_->Text();
  manager_.image_spacing = image_spacing_->Text();
  manager_.image_offset = image_offset_->Text();
  manager_.screen_pixels = screen_pixels_->isChecked();
}

void CRulerSettingsDialog::ApplyChanges() {
  StoreFields();
  ShowRefusal(app_, apply_());
}

}  // namespace korvanel
