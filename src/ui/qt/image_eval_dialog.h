#pragma once

// The I-Eval dialog: the expression editor (original or expanded), the run
// options and the saved list, a thin view of CImageEvalManager.

#include <QDialog>

class QButtonGroup;
class QCheckBox;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;
class QPushButton;

namespace korvanel {

class AppState;
class CHistoryCombo;
class CImageEvalManager;

class CImageEvalDialog final : public QDialog {
  Q_OBJECT

 public:
  CImageEvalDialog(AppState& app, CImageEvalManager& manager, QWidget* parent = nullptr);

 public slots:
  void accept() override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void StoreFields();
  void ToggleExpanded();
  void FillList();
  void SaveExpression();
  void DeleteSelected();
  void MoveSelected(bool up);
  void ToggleListView();
  void AppendToEditor(const std::string& text);
  std::string SelectedName() const;

  AppState& app_;
  CImageEvalManager& manager_;
  bool showing_expanded_ = false;
  QPlainTextEdit* editor_ = nullptr;
  QPushButton* expand_toggle_ = nullptr;
  CHistoryCombo* out_of_range_ = nullptr;
  CHistoryCombo* override_ = nullptr;
  QCheckBox* replace_ = nullptr;
  QCheckBox* roi_only_ = nullptr;
  QButtonGroup* channels_ = nullptr;
  QCheckBox* yuv_ = nullptr;
  QButtonGroup* depth_ = nullptr;
  QListWidget* list_ = nullptr;
  CHistoryCombo* name_ = nullptr;
  QPushButton* view_toggle_ = nullptr;
};

}  // namespace korvanel
