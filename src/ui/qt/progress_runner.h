#pragma once

// Runs a long operation on a helper thread while the UI thread keeps
// painting and running its timers. User input meanwhile is dropped, not
// queued: a key pressed during a save must not act on the result later.
// When the work is still running after the delay, a modal window titled
// with the operation shows its percentage and a Cancel button.

#include <QString>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>

class QDialog;
class QWidget;

namespace korvanel {

class CProgressRunner {
 public:
  static constexpr std::chrono::milliseconds kShowAfter{500};
  static constexpr std::chrono::milliseconds kPollPeriod{100};
  static constexpr std::chrono::milliseconds kEndPollPeriod{10};

  explicit CProgressRunner(std::chrono::milliseconds show_after = kShowAfter) : show_after_(show_after) {}

  // Blocks until `work` has ended; the window is modal over `parent`.
  // `cancel` is called on this thread when the user asks to stop; `work`
  // still runs to its (early) end.
  void Run(QWidget* parent, const QString& title, const std::function<void()>& work,
           const std::function<void()>& cancel);
  // Called on any thread: the percentage the window shows next.
  void SetPercent(uint32_t percent) { percent_.store(percent, std::memory_order_relaxed); }
  // Whether the last Run showed its window.
  bool WindowShown() const { return window_shown_; }

  // The window's texts, for its widgets and for tests.
  static QString PercentText(uint32_t percent);
  static constexpr const char* kCancelText = "Cancel";

 private:
  static QDialog* MakeWindow(QWidget* parent, const QString& title, const std::function<void()>& cancel);

  std::chrono::milliseconds show_after_;
  std::atomic<uint32_t> percent_{0};
  bool window_shown_ = false;
};

}  // namespace korvanel
