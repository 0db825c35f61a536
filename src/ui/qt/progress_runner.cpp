#include "ui/qt/progress_runner.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QEventLoop>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>
#include <QWindow>
#include <algorithm>
#include <memory>
#include <thread>

namespace korvanel {
namespace {

// Swallows user input everywhere but in the progress window.
class CInputBlocker final : public QObject {
 public:
  explicit CInputBlocker(const QPointer<QDialog>& window) : window_(window) {}

 protected:
  bool eventFilter(QObject* target, QEvent* event) override {
    if (!IsUserInput(event->type())) return false;
    if (Blocked(target)) {
      // A close event left accepted would still close its window.
      event->ignore();
      return true;
    }
    return false;
  }

 private:
  bool Blocked(QObject* target) const {
    const QWidget* own = window_.data();
    // Input reaches a window first, then its widgets.
    if (const auto* platform_window = qobject_cast<QWindow*>(target)) {
      return own == nullptr || platform_window != own->windowHandle();
    }
    const auto* widget = qobject_cast<QWidget*>(target);
    const bool in_window = own != nullptr && widget != nullptr && (widget == own || own->isAncestorOf(widget));
    return !in_window;
  }

  static bool IsUserInput(QEvent::Type type) {
    switch (type) {
      case QEvent::KeyPress:
      case QEvent::KeyRelease:
      case QEvent::ShortcutOverride:
      case QEvent::Shortcut:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::MouseMove:
      case QEvent::Wheel:
      case QEvent::Drop:
      case QEvent::DragEnter:
      case QEvent::DragMove:
      case QEvent::Close:
        return true;
      default:
        return false;
    }
  }

  const QPointer<QDialog>& window_;
};

// Esc and the close box ask to cancel, as the button does; the window goes
// only when the work has ended.
class CProgressWindow final : public QDialog {
 public:
  using QDialog::QDialog;
  void SetOnCancel(std::function<void()> on_cancel) { on_cancel_ = std::move(on_cancel); }
  void reject() override {
    if (on_cancel_) on_cancel_();
  }

 private:
  std::function<void()> on_cancel_;
};

}  // namespace

QString CProgressRunner::PercentText(uint32_t percent) { return QString("%1%").arg(std::min<uint32_t>(percent, 100)); }

QDialog* CProgressRunner::MakeWindow(QWidget* parent, const QString& title, const std::function<void()>& cancel) {
  auto* window = new CProgressWindow(parent);
  auto* label = new QLabel(PercentText(0), window);
  label->setObjectName("percent");
  auto* bar = new QProgressBar(window);
  bar->setRange(0, 100);
  bar->setValue(0);
  bar->setTextVisible(false);
  auto* button = new QPushButton(kCancelText, window);
  auto* layout = new QVBoxLayout(window);
  layout->addWidget(label);
  layout->addWidget(bar);
  layout->addWidget(button);
  window->setWindowTitle(title);
  window->setWindowModality(Qt::ApplicationModal);
  window->setMinimumWidth(320);
  // Asked once; the workers stop at their next row and the window closes
  // when they have.
  window->SetOnCancel([button, cancel] {
    if (!button->isEnabled()) return;
    button->setEnabled(false);
    cancel();
  });
  QObject::connect(button, &QPushButton::clicked, window, &QDialog::reject);
  return window;
}

void CProgressRunner::Run(QWidget* parent, const QString& title, const std::function<void()>& work, const std::function<void()>& cancel) {
  window_shown_ = false;
  percent_.store(0, std::memory_order_relaxed);
  QEventLoop loop;
  QObject receiver;
  std::atomic<bool> finished{false};

  QPointer<QDialog> window;
  CInputBlocker blocker(window);
  qApp->installEventFilter(&blocker);

  // The helper touches nothing of Qt: the loop polls its end. Qt's queues
  // lock with futexes that ThreadSanitizer cannot see.
  std::thread helper([&] {
    work();
    finished.store(true, std::memory_order_release);
  });
  QTimer end_poll;
  QObject::connect(&end_poll, &QTimer::timeout, &receiver, [&] {
    if (finished.load(std::memory_order_acquire)) loop.quit();
  });
  end_poll.start(static_cast<int>(kEndPollPeriod.count()));

  QTimer show_timer;
  show_timer.setSingleShot(true);
  QTimer poll_timer;
  QObject::connect(&show_timer, &QTimer::timeout, &receiver, [&] {
    if (finished.load(std::memory_order_acquire)) return;
    window = MakeWindow(parent, title, cancel);
    window_shown_ = true;
    window->show();
    poll_timer.start(static_cast<int>(kPollPeriod.count()));
  });
  QObject::connect(&poll_timer, &QTimer::timeout, &receiver, [&] {
    if (window == nullptr) return;
    const uint32_t percent = percent_.load(std::memory_order_relaxed);
    if (auto* label = window->findChild<QLabel*>("percent")) label->setText(PercentText(percent));
    if (auto* bar = window->findChild<QProgressBar*>()) bar->setValue(static_cast<int>(std::min<uint32_t>(percent, 100)));
  });
  show_timer.start(static_cast<int>(show_after_.count()));
  loop.exec();

  end_poll.stop();
  show_timer.stop();
  poll_timer.stop();
  helper.join();
  qApp->removeEventFilter(&blocker);
  delete window.data();
}

}  // namespace korvanel
