#pragma once

// The help window: the whole manual in a read-only text box, with OK.

#include <QDialog>

class QPlainTextEdit;

namespace korvanel {

inline constexpr const char* kHelpWindowTitle = "Help - Korvanel";

class CHelpWindow final : public QDialog {
  Q_OBJECT

 public:
  explicit CHelpWindow(QWidget* parent);
  QPlainTextEdit* Text() const { return text_; }

 private:
  QPlainTextEdit* text_ = nullptr;
};

}  // namespace korvanel
