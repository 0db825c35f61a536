// The start-up update check of the real program against a tiny HTTP server
// in this process: the magenta line under the invitation, and the dialog
// from the Help menu with the result at hand.
#include <gtest/gtest.h>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <mutex>
#include <string>
#include <thread>

#include "e2e/viewer/viewer_session.h"

namespace korvanel::test {
namespace {

constexpr uint32_t kMagenta = 0xFF00FF;
constexpr const char* kDocument =
    "<version>\r\n1.7\r\nNew viewer\r\n</version>\r\n<version>\r\n1.4\r\nThis one\r\n</version>\r\n<version_end>\r\n";

// Serves kDocument with status 200 to every connection until destroyed.
class DocumentServer {
 public:
  DocumentServer() {
    listener_ = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (listener_ < 0 || bind(listener_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(listener_, 4) != 0 || getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
      return;
    }
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
  }
  ~DocumentServer() {
    stopping_ = true;
    shutdown(listener_, SHUT_RDWR);
    close(listener_);
    if (thread_.joinable()) thread_.join();
  }
  DocumentServer(const DocumentServer&) = delete;
  DocumentServer& operator=(const DocumentServer&) = delete;

  int Port() const { return port_; }
  std::string Requests() const {
    std::lock_guard lock(mutex_);
    return requests_;
  }

 private:
  void Serve() {
    while (!stopping_) {
      const int client = accept(listener_, nullptr, nullptr);
      if (client < 0) return;
      std::string request;
      char buffer[2048];
      while (request.find("\r\n\r\n") == std::string::npos) {
        const ssize_t n = recv(client, buffer, sizeof buffer, 0);
        if (n <= 0) break;
        request.append(buffer, static_cast<size_t>(n));
      }
      {
        std::lock_guard lock(mutex_);
        requests_ += request;
      }
      const std::string body = kDocument;
      const std::string reply = "HTTP/1.1 200 OK\r\nContent-Type: text/plain\r\nContent-Length: " +
                                std::to_string(body.size()) + "\r\nConnection: close\r\n\r\n" + body;
      send(client, reply.data(), reply.size(), MSG_NOSIGNAL);
      close(client);
    }
  }

  int listener_ = -1;
  int port_ = 0;
  std::atomic<bool> stopping_{false};
  std::thread thread_;
  mutable std::mutex mutex_;
  std::string requests_;
};

int MagentaPixels(const QImage& image) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) count += PixelAt(image, x, y) == kMagenta;
  }
  return count;
}

TEST(ViewerUpdateCheck, NewerVersionShowsInMagentaAndInTheDialog) {
  DocumentServer server;
  ASSERT_NE(server.Port(), 0);
  ViewerSession session;
  session.AppendIni("[system]\nupdate_check_url = http://127.0.0.1:" + std::to_string(server.Port()) +
                    "/versions.txt\n");
  ASSERT_TRUE(session.Start({}));
  const std::string window = session.FindWindow();
  ASSERT_FALSE(window.empty()) << session.Output();

  // Where the line lies and what it says is the renderer's and the model's.
  EXPECT_TRUE(WaitFor([&] { return MagentaPixels(session.Screenshot(window)) > 20; }, kExitLimit))
      << "no magenta line; requests: " << server.Requests();
  EXPECT_NE(server.Requests().find("GET /versions.txt HTTP/1.1\r\n"), std::string::npos) << server.Requests();
  // The result is at hand: Help > Check for updates opens the dialog at once.
  ASSERT_TRUE(session.Keys(window, {"alt+h", "u"}));
  const std::string dialog = session.FindWindow("^Check for updates \\(current version is 1\\.4\\)$");
  ASSERT_FALSE(dialog.empty()) << session.Output();
  ASSERT_TRUE(session.Keys(dialog, {"Return"}));
  ASSERT_TRUE(session.Keys(window, {"alt+f", "x"}));
  EXPECT_EQ(session.WaitExit(), std::optional<int>(0)) << session.Output();
}

}  // namespace
}  // namespace korvanel::test
