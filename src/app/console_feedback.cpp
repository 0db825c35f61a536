#include "app/console_feedback.h"

namespace korvanel {

void CConsoleFeedback::ShowMessage(std::string_view text, std::string_view title, MessageStyle) {
  std::fprintf(out_, "[%.*s]: %.*s\n", static_cast<int>(title.size()), title.data(),
               static_cast<int>(text.size()), text.data());
  std::fflush(out_);
}

void CConsoleFeedback::StatusMessage(std::string_view text) {
  std::fprintf(out_, "%.*s\n", static_cast<int>(text.size()), text.data());
  std::fflush(out_);
}

void CConsoleFeedback::BatchError(std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), out_);
  std::fflush(out_);
}

bool CConsoleFeedback::AskYesNo(std::string_view, std::string_view) { return false; }

}  // namespace korvanel
