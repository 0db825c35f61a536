#pragma once

#include <string>
#include <vector>

#include "app/user_feedback.h"

namespace korvanel::test {

// Records what the core tells the user and answers questions with `answer`.
class RecordingFeedback : public IUserFeedback {
 public:
  void ShowMessage(std::string_view text, std::string_view title, MessageStyle) override {
    messages.push_back("[" + std::string(title) + "]: " + std::string(text));
  }
  void StatusMessage(std::string_view text) override { statuses.emplace_back(text); }
  void BatchError(std::string_view text) override { batch_errors.emplace_back(text); }
  bool AskYesNo(std::string_view text, std::string_view title) override {
    questions.push_back("[" + std::string(title) + "]: " + std::string(text));
    return answer;
  }
  void ImagesMenuChanged(const std::vector<MenuEntry>& entries,
                         std::optional<size_t> checked_entry) override {
    menu = entries;
    checked = checked_entry;
  }
  void HasImagesChanged(bool value) override { has_images = value; }

  std::vector<std::string> messages;
  std::vector<std::string> statuses;
  std::vector<std::string> questions;
  std::vector<std::string> batch_errors;
  std::vector<MenuEntry> menu;
  std::optional<size_t> checked;
  bool has_images = false;
  bool answer = true;
};

}  // namespace korvanel::test
