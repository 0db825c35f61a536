#include "ui/qt/qt_feedback.h"

#include <QFile>
#include <QFileDialog>
#include <QMessageBox>
#include <QString>
#include <cstdio>

#include "ui/qt/open_raw_dialog.h"
#include "ui/qt/qt_conversions.h"

namespace korvanel {
namespace {

struct StyleIcon {
  MessageStyle style;
  QMessageBox::Icon icon;
};

constexpr StyleIcon kStyleIcons[] = {
    {MessageStyle::Error, QMessageBox::Critical},
    {MessageStyle::Warning, QMessageBox::Warning},
    {MessageStyle::Information, QMessageBox::Information},
};

QMessageBox::Icon IconFor(MessageStyle style) {
  for (const StyleIcon& row : kStyleIcons) {
    if (row.style == style) return row.icon;
  }
  return QMessageBox::Critical;
}

// Boxes stay on top of other windows, as the core's messages must be seen.
int RunBox(QWidget* parent, QMessageBox::Icon icon, std::string_view text, std::string_view title,
           QMessageBox::StandardButtons buttons) {
  QMessageBox box(icon, ToQString(title), ToQString(text), buttons, parent);
  box.setWindowFlag(Qt::WindowStaysOnTopHint, true);
  return box.exec();
}

}  // namespace

void CQtFeedback::ShowMessage(std::string_view text, std::string_view title, MessageStyle style) {
  RunBox(window_.DialogParent(), IconFor(style), text, title, QMessageBox::Ok);
}

void CQtFeedback::StatusMessage(std::string_view text) { window_.ShowStatusMessage(text); }

void CQtFeedback::BatchError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

bool CQtFeedback::AskYesNo(std::string_view text, std::string_view title) {
  return RunBox(window_.DialogParent(), QMessageBox::Question, text, title, QMessageBox::Yes | QMessageBox::No) ==
         QMessageBox::Yes;
}

void CQtFeedback::ImagesMenuChanged(const std::vector<MenuEntry>& entries, std::optional<size_t> checked) {
  window_.ShowImagesMenu(entries, checked);
}

void CQtFeedback::HasImagesChanged(bool has_images) { window_.ShowHasImages(has_images); }

void CQtFeedback::RequestRepaint() { window_.Repaint(); }

bool CQtFeedback::AskSaveFileName(std::string_view suggested, std::string& path) {
  // "*" rather than "*.*": on Linux the latter hides files without a dot.
  // The core asks the overwrite question itself.
  const QString chosen = QFileDialog::getSaveFileName(window_.DialogParent(), QString(),
                                                      QFile::decodeName(QByteArray(suggested.data(), static_cast<qsizetype>(suggested.size()))),
                                                      "All Files (*)", nullptr, QFileDialog::DontConfirmOverwrite);
  if (chosen.isEmpty()) return false;
  path = QFile::encodeName(chosen).toStdString();
  return true;
}

void CQtFeedback::Progress(std::string_view, uint32_t percent) { runner_.SetPercent(percent); }

void CQtFeedback::RunLongOperation(std::string_view title, const std::function<void()>& run,
                                   const std::function<void()>& cancel) {
  runner_.Run(window_.DialogParent(), ToQString(title), run, cancel);
}

bool CQtFeedback::AskOpenRawFormat(std::string_view path, OpenRawAnswer& answer) {
  if (open_raw_app_ == nullptr || open_raw_ == nullptr) return false;
  COpenRawDialog dialog(*open_raw_app_, *open_raw_, path, window_.DialogParent());
  return dialog.Ask(answer);
}

}  // namespace korvanel
