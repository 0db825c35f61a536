#pragma once

// The Filter Colors dialog: a thin view of CFilterColorsManager. OK applies;
// a refusal shows its box and the dialog stays open.

#include <QDialog>

class QCheckBox;

namespace korvanel {

class AppState;
class CFilterColorsManager;
class CHistoryCombo;

class CFilterDialog final : public QDialog {
  Q_OBJECT

 public:
  CFilterDialog(AppState& app, CFilterColorsManager& manager, QWidget* parent = nullptr);

 public slots:
  void accept() override;

 private:
  void StoreFields();

  AppState& app_;
  CFilterColorsManager& manager_;
  CHistoryCombo* expression_ = nullptr;
  CHistoryCombo* negation_ = nullptr;
  QCheckBox* apply_to_all_ = nullptr;
  QCheckBox* apply_to_new_ = nullptr;
  QCheckBox* all_3_must_pass_ = nullptr;
  QCheckBox* separate_ = nullptr;
};

}  // namespace korvanel
