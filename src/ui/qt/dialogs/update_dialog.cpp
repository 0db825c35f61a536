#include "ui/qt/dialogs/update_dialog.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/model/update_check.h"

namespace korvanel {
namespace {

constexpr const char* kSeePreviousLogs = "See previous logs";
constexpr const char* kSeeHeadLog = "See head log";

QString FromUtf8(const std::string& text) { return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())); }

}  // namespace

CUpdateDialog::CUpdateDialog(const UpdateDecision& decision, const QString& download_url, QWidget* parent)
    : QDialog(parent), head_log_(FromUtf8(decision.head_log)), previous_logs_(FromUtf8(decision.previous_logs)) {
  setWindowTitle(FromUtf8(CUpdateCheck::DialogTitle()));
  auto* layout = new QVBoxLayout(this);
  status_ = new QLabel(FromUtf8(decision.status_line), this);
  layout->addWidget(status_);

  log_ = new QPlainTextEdit(head_log_, this);
  log_->setReadOnly(true);
  QPalette white = log_->palette();
  white.setColor(QPalette::Base, Qt::white);
  white.setColor(QPalette::Text, Qt::black);
  log_->setPalette(white);
  layout->addWidget(log_);

  auto* row = new QHBoxLayout;
  log_button_ = new QPushButton(kSeePreviousLogs, this);
  log_button_->setAutoDefault(false);
  connect(log_button_, &QPushButton::clicked, this, &CUpdateDialog::ToggleLogs);
  row->addWidget(log_button_);
  row->addStretch(1);
  layout->addLayout(row);

  if (!download_url.isEmpty()) {
    layout->addWidget(new QLabel(kDownloadLabelText, this));
    // The link opens in the desktop's browser (QDesktopServices).
    link_ = new QLabel(QString("<a href=\"%1\">%1</a>").arg(download_url.toHtmlEscaped()), this);
    link_->setTextFormat(Qt::RichText);
    link_->setTextInteractionFlags(Qt::TextBrowserInteraction);
    link_->setOpenExternalLinks(true);
    layout->addWidget(link_);
  }

  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  layout->addWidget(buttons);
  resize(520, 360);
}

QString CUpdateDialog::StatusText() const { return status_->text(); }

QString CUpdateDialog::LogText() const { return log_->toPlainText(); }

void CUpdateDialog::ToggleLogs() {
  showing_head_ = !showing_head_;
  log_->setPlainText(showing_head_ ? head_log_ : previous_logs_);
  log_button_->setText(showing_head_ ? kSeePreviousLogs : kSeeHeadLog);
}

}  // namespace korvanel
