#include "ui/qt/dialogs/help_window.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "app/manual_pages.h"

namespace korvanel {
namespace {

// Room for the manual's 91-character rows and a screenful of them.
constexpr int kTextColumns = 96;
constexpr int kTextRows = 40;

}  // namespace

CHelpWindow::CHelpWindow(QWidget* parent) : QDialog(parent) {
  setWindowTitle(kHelpWindowTitle);
  setModal(true);
  text_ = new QPlainTextEdit(this);
  text_->setReadOnly(true);
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  text_->setPlainText(QString::fromStdString(Manual().Manual()));
  const QFontMetrics fm(text_->font());
  text_->setMinimumSize(fm.horizontalAdvance(QString(kTextColumns, QLatin1Char('M'))), fm.lineSpacing() * kTextRows / 2);
  resize(fm.horizontalAdvance(QString(kTextColumns, QLatin1Char('M'))) + 40, fm.lineSpacing() * kTextRows);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addWidget(buttons);
}

}  // namespace korvanel
