#pragma once

// Fetches the update document with QtNetwork on the UI thread: Qt does the
// I/O off-thread and the outcome arrives as a signal, so no thread of ours
// is involved. Only status 200 with a body within the cap counts; time-outs,
// redirect loops and oversized bodies fail. What the document means is the
// model's business (ui/model/update_check.h).

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;
class QTimer;

namespace korvanel {

struct FetchLimits {
  int transfer_timeout_ms = 10000;  // without any data moving
  int total_timeout_ms = 30000;     // for the whole fetch, against a trickling server
  qint64 max_body_bytes = qint64{1} << 20;
  int max_redirects = 5;
};

inline constexpr const char* kUpdateUserAgent = "Microsoft Internet Explorer";

class CUpdateChecker final : public QObject {
  Q_OBJECT

 public:
  explicit CUpdateChecker(QObject* parent = nullptr, FetchLimits limits = {});
  ~CUpdateChecker() override;

  // Starts a fetch of `url` (http or https); a fetch still running is
  // abandoned without a signal.
  void Start(const QString& url);
  bool Running() const { return !reply_.isNull(); }
  // For tests that must not go through a proxy.
  QNetworkAccessManager& Manager() { return *manager_; }

 signals:
  // The fetch ended: `ok` with the whole body, else the reason.
  void Finished(bool ok, const QByteArray& body, const QString& reason);

 private:
  void OnReadyRead();
  void OnFinished();
  void Stop(const QString& reason);
  void Report(bool ok, const QByteArray& body, const QString& reason);

  FetchLimits limits_;
  QNetworkAccessManager* manager_ = nullptr;
  QTimer* deadline_ = nullptr;
  QPointer<QNetworkReply> reply_;
  QByteArray body_;
  QString stop_reason_;  // set when we cut the fetch short
};

}  // namespace korvanel
