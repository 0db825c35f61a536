// The update fetch against a local HTTP server on 127.0.0.1 serving canned
// replies: what counts as a document and every way a fetch fails.
#include <gtest/gtest.h>

#include <QLabel>
#include <QNetworkAccessManager>
#include <QNetworkProxy>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <functional>
#include <memory>

#include "ui/model/update_check.h"
#include "ui/qt/dialogs/update_dialog.h"
#include "ui/qt/update_checker.h"

namespace korvanel {
namespace {

constexpr const char* kDocument = "<version>\r\n1.5\r\nFaster\r\n</version>\r\n<version_end>\r\n";

QByteArray HttpReply(int status, const QByteArray& body, const QByteArray& extra_headers = {}) {
  return QByteArray("HTTP/1.1 ") + QByteArray::number(status) + " X\r\nContent-Length: " +
         QByteArray::number(body.size()) + "\r\nConnection: close\r\n" + extra_headers + "\r\n" + body;
}

// Answers every request with what `respond` writes on the socket; records
// the requests it saw.
class CannedServer {
 public:
  using Responder = std::function<void(QTcpSocket&)>;

  explicit CannedServer(Responder respond) : respond_(std::move(respond)) {
    EXPECT_TRUE(server_.listen(QHostAddress::LocalHost, 0));
    QObject::connect(&server_, &QTcpServer::newConnection, [this] {
      while (QTcpSocket* socket = server_.nextPendingConnection()) {
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
          request_ += socket->readAll();
          if (!request_.contains("\r\n\r\n")) return;
          requests_.push_back(request_);
          request_.clear();
          respond_(*socket);
        });
      }
    });
  }

  QString Url(const char* path = "/versions.txt") const {
    return QString("http://127.0.0.1:%1%2").arg(server_.serverPort()).arg(path);
  }
  const std::vector<QByteArray>& Requests() const { return requests_; }

 private:
  QTcpServer server_;
  Responder respond_;
  QByteArray request_;
  std::vector<QByteArray> requests_;
};

CannedServer::Responder Reply(QByteArray bytes) {
  return [bytes](QTcpSocket& socket) {
    socket.write(bytes);
    socket.disconnectFromHost();
  };
}

struct Outcome {
  bool ok = false;
  QByteArray body;
  QString reason;
};

constexpr FetchLimits kTestLimits{300, 3000, qint64{1} << 20, 5};

Outcome Fetch(const QString& url, FetchLimits limits = kTestLimits) {
  CUpdateChecker checker(nullptr, limits);
  // A proxy from the environment must not stand between us and 127.0.0.1.
  checker.Manager().setProxy(QNetworkProxy::NoProxy);
  QSignalSpy finished(&checker, &CUpdateChecker::Finished);
  checker.Start(url);
  if (!finished.wait(10000)) return {false, {}, "no signal"};
  EXPECT_FALSE(checker.Running());
  EXPECT_EQ(finished.count(), 1);
  const QList<QVariant> args = finished.takeFirst();
  return {args[0].toBool(), args[1].toByteArray(), args[2].toString()};
}

TEST(UpdateChecker, StatusTwoHundredDeliversTheBodyAsABrowserWouldAskForIt) {
  CannedServer server(Reply(HttpReply(200, kDocument)));
  const Outcome outcome = Fetch(server.Url());
  EXPECT_TRUE(outcome.ok) << outcome.reason.toStdString();
  EXPECT_EQ(outcome.body, QByteArray(kDocument));
  ASSERT_EQ(server.Requests().size(), 1u);
  const QByteArray& request = server.Requests().front();
  EXPECT_TRUE(request.startsWith("GET /versions.txt HTTP/1.1\r\n")) << request.toStdString();
  EXPECT_TRUE(request.contains("\r\nUser-Agent: Microsoft Internet Explorer\r\n")) << request.toStdString();
}

TEST(UpdateChecker, FailuresNameTheirReason) {
  const QByteArray twice_the_cap((qint64{2} << 20), 'x');
  struct Case {
    const char* name;
    CannedServer::Responder respond;
    const char* reason_part;
  } cases[] = {
      {"404", Reply(HttpReply(404, "not here")), "status 404"},
      {"204 is not 200", Reply(HttpReply(204, "")), "status 204"},
      {"2 MiB body", Reply(HttpReply(200, twice_the_cap)), "reply larger than the cap"},
      {"2 MiB without a length",
       Reply(QByteArray("HTTP/1.1 200 OK\r\nConnection: close\r\n\r\n") + twice_the_cap), "reply larger than the cap"},
      {"redirect loop", Reply(HttpReply(302, "", "Location: /versions.txt\r\n")), "too many redirects"},
      {"never answers", [](QTcpSocket&) {}, "time-out"},
      // Headers, then a byte now and then: the transfer time-out never
      // fires, the fetch's own deadline does.
      {"trickle",
       [](QTcpSocket& socket) {
         socket.write("HTTP/1.1 200 OK\r\nContent-Length: 100000\r\n\r\n");
         auto* drip = new QTimer(&socket);
         QObject::connect(drip, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
         drip->start(100);
       },
       "time-out"},
  };
  for (Case& c : cases) {
    SCOPED_TRACE(c.name);
    CannedServer server(std::move(c.respond));
    const Outcome outcome = Fetch(server.Url(), {300, 1500, qint64{1} << 20, 5});
    EXPECT_FALSE(outcome.ok);
    EXPECT_TRUE(outcome.body.isEmpty());
    EXPECT_TRUE(outcome.reason.contains(c.reason_part, Qt::CaseInsensitive)) << outcome.reason.toStdString();
  }
}

TEST(UpdateChecker, RefusedConnectionAndNonHttpAddressesFail) {
  quint16 closed_port = 0;
  {
    QTcpServer probe;
    ASSERT_TRUE(probe.listen(QHostAddress::LocalHost, 0));
    closed_port = probe.serverPort();
  }
  const Outcome refused = Fetch(QString("http://127.0.0.1:%1/v.txt").arg(closed_port));
  EXPECT_FALSE(refused.ok);
  EXPECT_TRUE(refused.reason.contains("refused", Qt::CaseInsensitive)) << refused.reason.toStdString();

  const Outcome ftp = Fetch("ftp://127.0.0.1/v.txt");
  EXPECT_FALSE(ftp.ok);
  EXPECT_EQ(ftp.reason, "not an http address: ftp://127.0.0.1/v.txt");
}

TEST(UpdateDialog, ShowsTheStatusAndSwitchesBetweenTheLogs) {
  const UpdateDecision decision{true, "1.5", "Available update: version 1.5", "Faster\n", "Older\nStill older\n"};
  CUpdateDialog dialog(decision, "https://example.org/get");
  EXPECT_EQ(dialog.windowTitle(), "Check for updates (current version is 1.4)");
  EXPECT_EQ(dialog.StatusText(), "Available update: version 1.5");
  EXPECT_EQ(dialog.LogText(), "Faster\n");
  EXPECT_EQ(dialog.LogButton().text(), "See previous logs");
  dialog.LogButton().click();
  EXPECT_EQ(dialog.LogText(), "Older\nStill older\n");
  EXPECT_EQ(dialog.LogButton().text(), "See head log");
  dialog.LogButton().click();
  EXPECT_EQ(dialog.LogText(), "Faster\n");
  ASSERT_NE(dialog.DownloadLink(), nullptr);
  EXPECT_TRUE(dialog.DownloadLink()->text().contains("href=\"https://example.org/get\""));

  CUpdateDialog without_link(decision, "");
  EXPECT_EQ(without_link.DownloadLink(), nullptr);
}

}  // namespace
}  // namespace korvanel
