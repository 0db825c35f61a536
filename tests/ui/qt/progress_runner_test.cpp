// The long-operation runner: the work runs on a helper thread, a window
// appears only when it takes long, and its Cancel reaches the work.
#include "ui/qt/progress_runner.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <atomic>
#include <chrono>
#include <thread>

namespace korvanel {
namespace {

using namespace std::chrono_literals;

// What a watcher saw of the modal window while the work ran.
struct SeenWindow {
  QString title;
  QString first_text;
  QString percent_text;
  bool clicked_cancel = false;
};

// Polls for the runner's window; once it shows `wanted`, clicks Cancel.
void WatchAndCancel(QTimer& poll, SeenWindow& seen, const QString& wanted) {
  QObject::connect(&poll, &QTimer::timeout, [&seen, wanted] {
    QWidget* window = QApplication::activeModalWidget();
    if (window == nullptr || seen.clicked_cancel) return;
    auto* label = window->findChild<QLabel*>("percent");
    if (label == nullptr) return;
    if (seen.title.isEmpty()) {
      seen.title = window->windowTitle();
      seen.first_text = label->text();
    }
    if (label->text() != wanted) return;
    seen.percent_text = label->text();
    auto* button = window->findChild<QPushButton*>();
    ASSERT_NE(button, nullptr);
    EXPECT_EQ(button->text(), "Cancel");
    seen.clicked_cancel = true;
    QTest::mouseClick(button, Qt::LeftButton);
  });
  poll.start(20);
}

TEST(ProgressRunnerTest, AShortJobShowsNoWindow) {
  CProgressRunner runner;
  bool cancelled = false;
  std::thread::id worker;
  runner.Run(nullptr, "Save image", [&] {
    worker = std::this_thread::get_id();
    std::this_thread::sleep_for(100ms);
  }, [&] { cancelled = true; });
  EXPECT_FALSE(runner.WindowShown());
  EXPECT_FALSE(cancelled);
  EXPECT_NE(worker, std::this_thread::get_id());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(ProgressRunnerTest, ALongJobShowsItsWindowAndCancelEndsIt) {
  CProgressRunner runner;
  std::atomic<bool> cancel_requested{false};
  std::atomic<bool> ended_early{false};
  SeenWindow seen;
  QTimer poll;
  WatchAndCancel(poll, seen, "37%");
  const auto started = std::chrono::steady_clock::now();
  runner.Run(nullptr, "Image Difference", [&] {
    runner.SetPercent(37);
    while (std::chrono::steady_clock::now() - started < 1500ms) {
      if (cancel_requested.load()) {
        ended_early = true;
        return;
      }
      std::this_thread::sleep_for(5ms);
    }
  }, [&] { cancel_requested = true; });
  poll.stop();
  EXPECT_TRUE(runner.WindowShown());
  EXPECT_EQ(seen.title, "Image Difference");
  EXPECT_EQ(seen.first_text, "0%");
  EXPECT_EQ(seen.percent_text, "37%");
  EXPECT_TRUE(seen.clicked_cancel);
  EXPECT_TRUE(ended_early.load());
  // The window goes with the work.
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST(ProgressRunnerTest, InputOutsideTheWindowIsDroppedWhileTheWorkRuns) {
  QWidget target;
  target.show();
  int keys = 0;
  class KeyCounter : public QObject {
   public:
    explicit KeyCounter(int& keys) : keys_(keys) {}
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::KeyPress) ++keys_;
      return false;
    }
    int& keys_;
  } counter(keys);
  target.installEventFilter(&counter);

  CProgressRunner runner;
  QTimer::singleShot(50, &target, [&] { QTest::keyClick(&target, Qt::Key_A); });
  runner.Run(nullptr, "Save image", [] { std::this_thread::sleep_for(200ms); }, [] {});
  EXPECT_EQ(keys, 0);
  QTest::keyClick(&target, Qt::Key_A);
  EXPECT_EQ(keys, 1);
}

}  // namespace
}  // namespace korvanel
