#pragma once

// The Convert dialog: a thin view of CConvertRawManager for the focus image.

#include <QDialog>
#include <array>
#include <cstdint>

class QCheckBox;
class QLabel;

namespace korvanel {

class AppState;
class CConvertRawManager;
class CFormatChoiceButtons;
class CHistoryCombo;

class CConvertDialog final : public QDialog {
  Q_OBJECT

 public:
  CConvertDialog(AppState& app, CConvertRawManager& manager, QWidget* parent = nullptr);

 public slots:
  void accept() override;

 private:
  void StoreFields();
  void Refresh();

  AppState& app_;
  CConvertRawManager& manager_;
  uint32_t source_width_ = 0;
  uint32_t source_height_ = 0;
  CHistoryCombo* direct_ = nullptr;
  CFormatChoiceButtons* choices_ = nullptr;
  QLabel* generated_ = nullptr;
  QCheckBox* custom_transform_ = nullptr;
  std::array<QLabel*, 3> row_labels_{};
  std::array<CHistoryCombo*, 3> rows_{};
  QCheckBox* resize_ = nullptr;
  CHistoryCombo* size_ = nullptr;
  QLabel* new_size_ = nullptr;
  CHistoryCombo* offset_ = nullptr;
  QCheckBox* tiled_ = nullptr;
};

}  // namespace korvanel
