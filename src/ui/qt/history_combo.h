#pragma once

// An editable drop-down whose list is one tag of the dialog edit history,
// most recent first.

#include <QComboBox>
#include <string>

namespace korvanel {

class CEditHistory;

class CHistoryCombo final : public QComboBox {
  Q_OBJECT

 public:
  CHistoryCombo(const CEditHistory& history, std::string tag, QWidget* parent = nullptr);

  const std::string& Tag() const { return tag_; }
  std::string Text() const;
  void SetText(const std::string& text);

 private:
  std::string tag_;
};

// A history field named `name` (tests find it by that name) showing `text`.
CHistoryCombo* HistoryField(const CEditHistory& history, const char* tag, const std::string& name,
                            const std::string& text, QWidget* parent);

}  // namespace korvanel
