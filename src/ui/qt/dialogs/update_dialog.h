#pragma once

// The update dialog: the status line, the head change log in a white
// read-only box that "See previous logs" / "See head log" switches, the
// download link (hidden without an address), OK.

#include <QDialog>
#include <QString>

#include "ui/model/update_document.h"

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace korvanel {

class CUpdateDialog final : public QDialog {
  Q_OBJECT

 public:
  CUpdateDialog(const UpdateDecision& decision, const QString& download_url, QWidget* parent = nullptr);

  QString StatusText() const;
  QString LogText() const;
  QPushButton& LogButton() { return *log_button_; }
  // Null when no download address is configured.
  const QLabel* DownloadLink() const { return link_; }

 private:
  void ToggleLogs();

  QString head_log_;
  QString previous_logs_;
  bool showing_head_ = true;
  QLabel* status_ = nullptr;
  QPlainTextEdit* log_ = nullptr;
  QPushButton* log_button_ = nullptr;
  QLabel* link_ = nullptr;
};

}  // namespace korvanel
