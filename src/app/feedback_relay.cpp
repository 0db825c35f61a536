#include "app/feedback_relay.h"

namespace korvanel {

void CFeedbackRelay::ShowMessage(std::string_view text, std::string_view title, MessageStyle style) {
  target_->ShowMessage(text, title, style);
}

void CFeedbackRelay::StatusMessage(std::string_view text) { target_->StatusMessage(text); }

void CFeedbackRelay::BatchError(std::string_view text) { target_->BatchError(text); }

bool CFeedbackRelay::AskYesNo(std::string_view text, std::string_view title) {
  return target_->AskYesNo(text, title);
}

bool CFeedbackRelay::AskOpenRawFormat(std::string_view path, OpenRawAnswer& answer) {
  return target_->AskOpenRawFormat(path, answer);
}

bool CFeedbackRelay::AskSaveFileName(std::string_view suggested, std::string& path) {
  return target_->AskSaveFileName(suggested, path);
}

void CFeedbackRelay::ImagesMenuChanged(const std::vector<MenuEntry>& entries, std::optional<size_t> checked) {
  target_->ImagesMenuChanged(entries, checked);
}

void CFeedbackRelay::HasImagesChanged(bool has_images) { target_->HasImagesChanged(has_images); }

void CFeedbackRelay::Progress(std::string_view title, uint32_t percent) { target_->Progress(title, percent); }

void CFeedbackRelay::RequestRepaint() { target_->RequestRepaint(); }

void CFeedbackRelay::RunLongOperation(std::string_view title, const std::function<void()>& run,
                                      const std::function<void()>& cancel) {
  target_->RunLongOperation(title, run, cancel);
}

}  // namespace korvanel
