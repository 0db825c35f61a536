#pragma once

// The modeless ruler settings dialog: "Apply changes" hands the values to the
// controller, which sets them on the views and repaints; the dialog stays.

#include <QDialog>
#include <functional>

#include "ui/model/dialog_message.h"

class QRadioButton;

namespace korvanel {

class AppState;
class CHistoryCombo;
class CRulerSettingsManager;

class CRulerSettingsDialog final : public QDialog {
  Q_OBJECT

 public:
  // `apply` carries the values out once they are stored in `manager`.
  CRulerSettingsDialog(AppState& app, CRulerSettingsManager& manager, std::function<DialogResult()> apply,
                       QWidget* parent = nullptr);

  void ApplyChanges();

 private:
  void StoreFields();

  AppState& app_;
  CRulerSettingsManager& manager_;
  std::function<DialogResult()> apply_;
  CHistoryCombo* screen_spacing_ = nullptr;
  CHistoryCombo* image_spacing_ = nullptr;
  CHistoryCombo* image_offset_ = nullptr;
  QRadioButton* screen_pixels_ = nullptr;
  QRadioButton* image_pixels_ = nullptr;
};

}  // namespace korvanel
