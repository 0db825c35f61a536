#include "ui/qt/history_combo.h"

#include <QLineEdit>

#include "app/edit_history.h"
#include "ui/qt/text_field.h"

namespace korvanel {

CHistoryCombo::CHistoryCombo(const CEditHistory& history, std::string tag, QWidget* parent)
    : QComboBox(parent), tag_(std::move(tag)) {
  setEditable(true);
  setInsertPolicy(QComboBox::NoInsert);
  // Long expressions must stay readable and must not widen the dialog.
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  setMinimumContentsLength(32);
  BoundLineEdit(lineEdit());
  for (const std::string& entry : history.Entries(tag_)) addItem(QString::fromStdString(entry));
}

std::string CHistoryCombo::Text() const { return currentText().toStdString(); }

void CHistoryCombo::SetText(const std::string& text) { setEditText(QString::fromStdString(text)); }

CHistoryCombo* HistoryField(const CEditHistory& history, const char* tag, const std::string& name,
                            const std::string& text, QWidget* parent) {
  auto* combo = new CHistoryCombo(history, tag, parent);
  combo->setObjectName(QString::fromStdString(name));
  combo->SetText(text);
  return combo;
}

}  // namespace korvanel
