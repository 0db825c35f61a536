#pragma once

// The open-raw dialog: how to read a file no rule of the formats file
// matched. A thin view of COpenRawImageManager.

#include <QDialog>
#include <string_view>

#include "app/user_feedback.h"

class QCheckBox;
class QLabel;

namespace korvanel {

class AppState;
class CFormatChoiceButtons;
class CHistoryCombo;
class COpenRawImageManager;

class COpenRawDialog final : public QDialog {
  Q_OBJECT

 public:
  COpenRawDialog(AppState& app, COpenRawImageManager& manager, std::string_view path, QWidget* parent = nullptr);
  // Runs the dialog; false when the user cancels.
  bool Ask(OpenRawAnswer& answer);

 public slots:
  void accept() override;

 private:
  void StoreFields();
  void ShowGenerated();

  AppState& app_;
  COpenRawImageManager& manager_;
  OpenRawAnswer answer_;
  CHistoryCombo* width_ = nullptr;
  CHistoryCombo* height_ = nullptr;
  CHistoryCombo* offset_ = nullptr;
  CHistoryCombo* direct_ = nullptr;
  CFormatChoiceButtons* choices_ = nullptr;
  QCheckBox* ascii_ = nullptr;
  QLabel* generated_ = nullptr;
};

}  // namespace korvanel
