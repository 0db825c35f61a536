#pragma once

// How the core reports to and asks the user. The console implementation
// lives beside it in app/; the viewer implements it with Qt in ui/. The core
// never reaches widgets any other way.

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvanel {

enum class MessageStyle { Error, Warning, Information };

// One entry of the images menu: "[HK id] name" and its command id.
struct MenuEntry {
  std::string text;
  uint32_t command_id = 0;
  friend bool operator==(const MenuEntry&, const MenuEntry&) = default;
};

// What the user typed into the open-raw prompt.
struct OpenRawAnswer {
  std::string expression;
  uint32_t width = 0;
  uint32_t height = 0;
};

class IUserFeedback {
 public:
  virtual ~IUserFeedback() = default;

  // An error or warning: a modal box with a caption, or a console line.
  virtual void ShowMessage(std::string_view text, std::string_view title, MessageStyle style) = 0;
  // The first part of the status bar, or a console line.
  virtual void StatusMessage(std::string_view text) = 0;
  // A batch command's error line (already ending in a line feed); the
  // console prints it as it is.
  virtual void BatchError(std::string_view text) = 0;
  // Yes/No question; true only for Yes.
  virtual bool AskYesNo(std::string_view text, std::string_view title) = 0;

  // Asks how to read a raw file no rule matched; false when the user cancels
  // (and always without a window).
  virtual bool AskOpenRawFormat(std::string_view path, OpenRawAnswer& answer) {
    (void)path;
    (void)answer;
    return false;
  }

  // A save-file dialog (filter "All Files (*.*)") starting at `suggested`;
  // false when the user cancels, and always without a window.
  virtual bool AskSaveFileName(std::string_view suggested, std::string& path) {
    (void)suggested;
    (void)path;
    return false;
  }

  // View notifications; the console has no view and ignores them.
  virtual void ImagesMenuChanged(const std::vector<MenuEntry>& entries,
                                 std::optional<size_t> checked) {
    (void)entries;
    (void)checked;
  }
  virtual void HasImagesChanged(bool has_images) { (void)has_images; }
  // Progress of a long operation, called on the progress thread every
  // period: the operation's title and its percentage done. The console
  // shows nothing; the viewer's progress window marshals it to its thread.
  virtual void Progress(std::string_view title, uint32_t percent) {
    (void)title;
    (void)percent;
  }
  virtual void RequestRepaint() {}
  // Runs a long operation's `run` to its end. The viewer runs it on a helper
  // thread and, when it takes long, shows a progress window whose Cancel
  // calls `cancel` (from the UI thread). Without a window it just runs.
  virtual void RunLongOperation(std::string_view title, const std::function<void()>& run,
                                const std::function<void()>& cancel) {
    (void)title;
    (void)cancel;
    run();
  }
};

}  // namespace korvanel
