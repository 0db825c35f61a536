#pragma once

#include <cstdio>

#include "app/user_feedback.h"

namespace korvanel {

// Window-less feedback: messages as "[title]: text" lines and status texts as
// plain lines on standard output. Questions are answered No, so a batch run
// never destroys anything it was not told to.
class CConsoleFeedback final : public IUserFeedback {
 public:
  explicit CConsoleFeedback(std::FILE* out = stdout) : out_(out) {}
  void ShowMessage(std::string_view text, std::string_view title, MessageStyle style) override;
  void StatusMessage(std::string_view text) override;
  void BatchError(std::string_view text) override;
  bool AskYesNo(std::string_view text, std::string_view title) override;

 private:
  std::FILE* out_;
};

}  // namespace korvanel
