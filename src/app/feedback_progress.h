#pragma once

#include <cstdint>
#include <string>

#include "app/user_feedback.h"
#include "image/progress_sink.h"

namespace korvanel {

// Turns the pool's progress samples into the percentage of an operation's
// pixels, truncated and capped at 100, for the user-feedback interface.
class CFeedbackProgress final : public IProgressSink {
 public:
  explicit CFeedbackProgress(IUserFeedback& feedback) : feedback_(feedback) {}
  // Set between runs, never while one is under way.
  void Start(std::string title, uint64_t total_pixels) {
    title_ = std::move(title);
    total_ = total_pixels;
  }
  void OnProgress(uint64_t elapsed_ms, uint64_t progress_sum) override;
  std::string_view Title() const override { return title_; }
  static uint32_t Percent(uint64_t done, uint64_t total);

 private:
  IUserFeedback& feedback_;
  std::string title_;
  uint64_t total_ = 0;
};

}  // namespace korvanel
