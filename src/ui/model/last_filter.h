#pragma once

// The filter the filter dialog applied last, kept for Ctrl+F and "Apply
// acti&ve filter": the dialog records each filter it applies, and reapplying
// runs it again on the focus image. Nothing happens before one is recorded.

#include <optional>

#include "app/filter_command.h"

namespace korvanel {

class AppState;

class CLastFilter {
 public:
  void Record(const FilterCommand& command) { last_ = command; }
  bool Recorded() const { return last_.has_value(); }
  // Runs the recorded filter on the image at `index`; a failure shows its
  // message. False when nothing ran.
  bool Reapply(AppState& app, size_t index) const;

 private:
  std::optional<FilterCommand> last_;
};

}  // namespace korvanel
