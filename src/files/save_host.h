#pragma once

// What saving needs from the application: the settings that decide names
// and folders, and a way to report and ask. The application implements the
// host over its user-feedback interface; tests record.

#include <string>
#include <string_view>

namespace korvanel {

class IImageContainer;

struct SaveSettings {
  bool auto_naming = true;
  // A batch run without a window: an existing file fails instead of asking.
  bool console_batch = false;
  bool c_arrays = false;  // hexa-text saves write C arrays
  // Automatic names go beside the source file; images that never had a
  // file (results of operations) go here.
  std::string work_path;
};

// Per command (the batch options `name` and `ovr`).
struct SaveOptions {
  std::string forced_name;  // used as given when not empty
  bool overwrite_existing = false;
};

class ISaveHost {
 public:
  virtual ~ISaveHost() = default;
  virtual void ShowError(std::string_view text, std::string_view title) = 0;
  virtual void ShowStatus(std::string_view text) = 0;
  virtual bool AskYesNo(std::string_view text, std::string_view title) = 0;
  // A save-file dialog starting at `suggested`; false when cancelled.
  virtual bool AskFileName(std::string_view suggested, std::string& path) = 0;
  // The image reached its file.
  virtual void Saved(const IImageContainer* image) = 0;
};

}  // namespace korvanel
