#include "app/feedback_progress.h"

#include <algorithm>

namespace korvanel {

uint32_t CFeedbackProgress::Percent(uint64_t done, uint64_t total) {
  if (total == 0) return 100;
  return static_cast<uint32_t>(std::min<uint64_t>(100, done * 100 / total));
}

void CFeedbackProgress::OnProgress(uint64_t elapsed_ms, uint64_t progress_sum) {
  (void)elapsed_ms;
  feedback_.Progress(title_, Percent(progress_sum, total_));
}

}  // namespace korvanel
