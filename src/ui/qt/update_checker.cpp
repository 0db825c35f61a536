#include "ui/qt/update_checker.h"

#include <QNetworkAccessManager>
#include <QNetworkProxyFactory>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <QUrl>

namespace korvanel {

CUpdateChecker::CUpdateChecker(QObject* parent, FetchLimits limits)
    : QObject(parent), limits_(limits), manager_(new QNetworkAccessManager(this)), deadline_(new QTimer(this)) {
  // The platform's proxy settings, as a browser would use them.
  QNetworkProxyFactory::setUseSystemConfiguration(true);
  deadline_->setSingleShot(true);
  connect(deadline_, &QTimer::timeout, this, [this] { Stop("time-out"); });
}

CUpdateChecker::~CUpdateChecker() {
  if (reply_) {
    reply_->disconnect(this);
    reply_->abort();
  }
}

void CUpdateChecker::Start(const QString& url) {
  if (reply_) {
    reply_->disconnect(this);
    reply_->abort();
    reply_->deleteLater();
  }
  body_.clear();
  stop_reason_.clear();
  const QUrl address(url);
  const QString scheme = address.scheme().toLower();
  if (!address.isValid() || (scheme != "http" && scheme != "https")) {
    // Reported from the event loop, as every other outcome is.
    QTimer::singleShot(0, this, [this, url] { Report(false, {}, "not an http address: " + url); });
    return;
  }
  QNetworkRequest request(address);
  request.setHeader(QNetworkRequest::UserAgentHeader, kUpdateUserAgent);
  request.setAttribute(QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
  request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
  request.setTransferTimeout(limits_.transfer_timeout_ms);
  request.setMaximumRedirectsAllowed(limits_.max_redirects);
  reply_ = manager_->get(request);
  connect(reply_, &QNetworkReply::readyRead, this, &CUpdateChecker::OnReadyRead);
  connect(reply_, &QNetworkReply::finished, this, &CUpdateChecker::OnFinished);
  deadline_->start(limits_.total_timeout_ms);
}

void CUpdateChecker::OnReadyRead() {
  if (!reply_) return;
  body_.append(reply_->readAll());
  if (body_.size() > limits_.max_body_bytes) Stop("reply larger than the cap");
}

void CUpdateChecker::Stop(const QString& reason) {
  if (!reply_) return;
  stop_reason_ = reason;
  reply_->abort();  // finishes the reply, which reports
}

void CUpdateChecker::OnFinished() {
  QNetworkReply* reply = reply_;
  if (reply == nullptr) return;
  reply_.clear();
  reply->deleteLater();
  deadline_->stop();
  if (!stop_reason_.isEmpty()) {
    Report(false, {}, stop_reason_);
    return;
  }
  // Only the transfer time-out aborts behind our back.
  if (reply->error() == QNetworkReply::OperationCanceledError || reply->error() == QNetworkReply::TimeoutError) {
    Report(false, {}, "time-out");
    return;
  }
  if (reply->error() == QNetworkReply::TooManyRedirectsError) {
    Report(false, {}, "too many redirects");
    return;
  }
  const QVariant status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
  if (status.isValid() && status.toInt() != 200) {
    Report(false, {}, QString("status %1").arg(status.toInt()));
    return;
  }
  if (reply->error() != QNetworkReply::NoError) {
    Report(false, {}, reply->errorString());
    return;
  }
  body_.append(reply->readAll());
  if (body_.size() > limits_.max_body_bytes) {
    Report(false, {}, "reply larger than the cap");
    return;
  }
  Report(true, body_, {});
}

void CUpdateChecker::Report(bool ok, const QByteArray& body, const QString& reason) {
  const QByteArray kept = body;  // body_ may be reused by a fetch the receiver starts
  body_.clear();
  emit Finished(ok, kept, reason);
}

}  // namespace korvanel
