#pragma once

// The one application object: the registry of open images, focus and
// comparison state, the unsaved-results set behind the exit prompt, and the
// message buffer every user-facing text of the core is formatted into.

#include <cstdint>
#include <deque>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "app/config_values.h"
#include "app/edit_history.h"
#include "app/image_registry.h"
#include "app/user_feedback.h"
#include "expr/ieval_list.h"
#include "files/formats_file.h"
#include "image/line_sink.h"

namespace korvanel {

class CConfiguration;
class COperationHost;
class JobRunner;
class WorkerPool;

enum class CloseOption : uint32_t { Never = 0, Always = 1, NewCreatedImage = 2 };

inline constexpr size_t kNoIndex = static_cast<size_t>(-1);

class AppState {
 public:
  static constexpr size_t kMessageBufferSize = 1024;
  static constexpr uint32_t kMenuCommandBase = 33222;

  // Without a configuration: built-in defaults and no logs.
  explicit AppState(IUserFeedback& feedback);
  // Applies `config` and records every ShowMessage in its application log;
  // the log gets "Session end mark" when the state goes. The program passes
  // GetConfiguration(), tests one read from a temporary folder.
  AppState(IUserFeedback& feedback, CConfiguration& config);
  AppState(const AppState&) = delete;
  AppState& operator=(const AppState&) = delete;
  ~AppState();

  // --- opening ---------------------------------------------------------------
  // Opens a file and registers it; true when an image was added. A file that
  // is already open is silently not opened again.
  bool OpenImage(const std::string& path);
  // The same with other rules than those in force (forced size or format).
  bool OpenImage(const std::string& path, const FormatRules& rules);
  FormatRules& Formats() { return format_rules_; }
  // Reads the rules from `path` alone (--fmt_file), or with an empty path
  // from the configured formats file: in the current folder, then beside
  // the executable.
  bool LoadFormats(const std::string& path);
  // Where the steps of matching files against the rules are traced.
  void SetFormatLog(ILineSink* log) { format_log_ = log != nullptr ? log : &null_log_; }
  ILineSink& FormatLog() { return *format_log_; }
  void SetOpenRawPrompt(bool enabled) { open_raw_prompt_ = enabled; }

  // --- registry ------------------------------------------------------------
  const ImageRegistry& Images() const { return images_; }
  ImageRegistry& Images() { return images_; }
  // Appends an image under the next HK id and focuses it unless a comparison
  // is running. `from_file` makes `display_name` the path that later opens of
  // the same file are checked against. Returns the index, or kNoIndex when full.
  size_t RegisterImage(std::unique_ptr<IImageContainer> image, std::string display_name,
                       std::string format_text, bool from_file);
  // Puts `image` in place of the one at `index` (an operation's result),
  // keeping its HK id; it then counts as created and unsaved.
  bool ReplaceImage(size_t index, std::unique_ptr<IImageContainer> image, std::string format_text);
  void CloseImage(size_t index);
  void CloseAllImages();
  // Indices of the watched file-backed images whose file's last-write time
  // differs from the one recorded (a file that cannot be read counts as
  // unchanged).
  std::vector<size_t> ChangedFiles() const;
  // Loads the image at `index` again from its file, in place: HK id, name
  // and unsaved state stay. `keep_format` reads it with its current
  // expression and size, else the rules detect the format again. When the
  // file no longer loads, the old image stays and a message says so.
  bool ReloadImage(size_t index, bool keep_format);
  bool NewImageFromView();
  // The same, always a full duplicate (File > New duplicate).
  bool NewDuplicateFromView();
  // Refuses with the "Too many open images" message when the registry is full.
  bool CheckRoomForImage();
  // Frees the renditions of images outside the party (the comparison group,
  // else the focus image): a 4K rendition is 33 MB, and nothing shows them
  // until they join it again.
  void ReleaseHiddenRenditions();

  // --- focus and comparison ------------------------------------------------
  void SetFocus(size_t index);
  size_t FocusIndex() const { return focus_index_; }
  void SetHover(size_t index, int32_t cursor_x, int32_t cursor_y);
  void BeginCollecting();
  // kNoIndex collects every image the size of the focus image.
  void CollectForCompare(size_t index);
  void LeaveCompareMode();
  // Compares `indices` directly: images whose size differs from the first
  // are left out, and with fewer than two left no comparison starts.
  void CompareImages(const std::vector<size_t>& indices);
  // Compares exactly `indices`, whatever their sizes (the diff checks them).
  void ForceComparison(std::vector<size_t> indices);
  // Compares every image of the size of the image at `anchor`.
  void CompareAllLike(size_t anchor);
  bool CompareMode() const { return compare_mode_; }
  bool Collecting() const { return collecting_; }
  const std::vector<size_t>& ComparisonGroup() const { return comparison_group_; }
  const std::vector<size_t>& Collected() const { return collected_; }
  // Indices of the focus history, most recent first.
  std::vector<size_t> FocusHistory() const;
  // Ends collecting without comparing: the collection is dropped, a running
  // comparison stays as it is.
  void EndCollecting();
  // Takes the image at registry `index` out of the comparison group; with
  // fewer than two left, compare mode ends.
  void RemoveFromComparison(size_t index);

  // --- layer mode: the comparison group shown one image at a time ----------
  bool LayerMode() const { return layer_mode_; }
  // Refused (false) outside compare mode. Turning it on shows the focus
  // image's layer, or the first.
  bool SetLayerMode(bool on);
  // Positions within the comparison group.
  size_t VisibleLayer() const { return visible_layer_; }
  size_t PreviousLayer() const { return previous_layer_; }
  // Shows the group member at `layer` and focuses it; the layer shown so far
  // becomes the previous one. False when out of range or already shown.
  bool SetVisibleLayer(size_t layer);

  // --- unsaved results and exit --------------------------------------------
  void MarkCreatedUnsaved(const IImageContainer* image);
  void MarkSaved(const IImageContainer* image);
  bool IsCreatedUnsaved(const IImageContainer* image) const;
  bool ConfirmExit();

  // --- messages ------------------------------------------------------------
  // Formats into the shared buffer (truncated at 1023 characters) and returns it.
  const char* FormatMessage(const char* format, ...) __attribute__((format(printf, 2, 3)));
  const char* Message() const { return message_; }
  void ShowMessage(std::string_view text, std::string_view title,
                   MessageStyle style = MessageStyle::Error);
  void StatusMessage(const char* format, ...) __attribute__((format(printf, 2, 3)));
  // Logs a status text the window shows by itself (the viewer's own
  // prompts and refusals), as StatusMessage logs the core's.
  void LogStatusMessage(std::string_view text);
  // A failed batch command: the text goes to the console and the batch error
  // log, and the run is marked failed.
  void ReportBatchError(const char* format, ...) __attribute__((format(printf, 2, 3)));
  IUserFeedback& Feedback() { return feedback_; }

  // --- modes and settings --------------------------------------------------
  void SetCommandsPresent(bool present) { commands_present_ = present; }
  void SetConsoleMode(bool console) { console_mode_ = console; }
  bool BatchConsoleMode() const { return commands_present_ && console_mode_; }
  void SetBatchFailed(bool failed) { batch_failed_ = failed; }
  bool BatchFailed() const { return batch_failed_; }
  void SetMaxComparisonParty(uint32_t limit) { max_comparison_party_ = limit; }
  uint32_t MaxComparisonParty() const { return max_comparison_party_; }
  void SetCloseOption(CloseOption option) { close_option_ = option; }
  const std::vector<MenuEntry>& ImagesMenu() const { return images_menu_; }

  // --- configured settings -------------------------------------------------
  // Takes the settings the core keeps here and installs the configured colour
  // transforms as the ones in force; --cfg_file calls it again.
  void ApplyConfiguration(const ConfigValues& values);
  // Reads another configuration file over the current settings (--cfg_file).
  bool LoadConfiguration(const std::string& path);
  DiffType GetDiffType() const { return diff_type_; }
  void SetDiffType(DiffType type) { diff_type_ = type; }
  bool AutoFileNaming() const { return auto_file_naming_; }
  void SetAutoFileNaming(bool on) { auto_file_naming_ = on; }
  // Hexa-text saves write C arrays instead of a hex-viewer dump.
  bool SaveTextHexCArray() const { return save_text_hex_c_array_; }
  // favor_low_mem_over_speed: filters keep their tables instead of a shown copy.
  bool FavorLowMemory() const { return favor_low_memory_; }
  void SetFavorLowMemory(bool on) { favor_low_memory_ = on; }
  void SetSaveTextHexCArray(bool on) { save_text_hex_c_array_ = on; }
  // 0: every logical processor, -1: no worker threads.
  int32_t MaxProcessThreads() const { return max_process_threads_; }
  // The start zoom; 0 fits the image to the window.
  double DefaultZoom() const { return default_zoom_; }
  const std::string& WorkPath() const { return work_path_; }
  const std::string& FormatFilePath() const { return format_file_path_; }
  const std::string& IevalFilePath() const { return ieval_file_path_; }
  // The Developer menu's log switches; without a configuration they do nothing.
  bool AppLogEnabled() const;
  void SetAppLogEnabled(bool on);
  bool FormatLogEnabled() const;
  void SetFormatLogEnabled(bool on);

  // --- long operations -----------------------------------------------------
  // The runner of the worker pool, made at first use with
  // max_process_threads workers (none for -1: jobs run on this thread).
  JobRunner& Jobs();
  // A long operation's pool run is under way (the viewer is then busy).
  bool OperationRunning() const;
  // The saved I-Eval list, read from IevalFilePath() at first use.
  CIEvalList& SavedIEvals();
  // Where the saved list is kept ("qel.ieval.txt" unless configured).
  std::string SavedIEvalsPath() const;
  // Reads the list from its file again, telling the user what failed.
  void ReloadSavedIEvals();

  // --- dialog edit history -------------------------------------------------
  // Read from EditHistoryPath() at construction when reload_dialogs_edit_history
  // is on, else empty (the file's entries are then kept aside and stored
  // under the new ones).
  CEditHistory& EditHistory() { return edit_history_; }
  // "Korvanel.dat" in the work path, where the logs go; empty without a
  // configuration (nothing is stored then).
  std::filesystem::path EditHistoryPath() const;
  // Writes the history; false when there is no path, it cannot be written, or
  // the file was there but could not be read (it is then left alone).
  bool StoreEditHistory() const;

 private:
  void LoadEditHistory(bool restore);
  void RebuildImagesMenu();
  bool OpenWithPrompt(const std::string& path);
  void StartComparing(std::vector<size_t> group);
  std::vector<size_t> GatherLike(size_t anchor) const;
  void ShowCollectingStatus(const std::vector<size_t>& collected);
  bool NewImageFrom(bool allow_crop);
  void ResetLayers();
  void RemoveGroupPosition(size_t position);
  void ForgetSerial(uint64_t serial);
  uint64_t SerialOf(const IImageContainer* image) const;

  IUserFeedback& feedback_;
  ImageRegistry images_;
  uint64_t next_serial_ = 1;

  size_t focus_index_ = kNoIndex;
  size_t hover_index_ = kNoIndex;
  int32_t cursor_x_ = -1;
  int32_t cursor_y_ = -1;
  bool compare_mode_ = false;
  std::vector<size_t> comparison_group_;
  bool collecting_ = false;
  std::vector<size_t> collected_;
  bool layer_mode_ = false;
  size_t visible_layer_ = 0;
  size_t previous_layer_ = 0;
  uint32_t max_comparison_party_ = 6;
  std::deque<uint64_t> focus_history_;  // serials, most recent first
  std::vector<uint64_t> unsaved_created_;

  bool commands_present_ = false;
  bool console_mode_ = false;
  bool batch_failed_ = false;
  CloseOption close_option_ = CloseOption::NewCreatedImage;

  FormatRules format_rules_;
  CNullLineSink null_log_;
  ILineSink* format_log_ = &null_log_;
  bool open_raw_prompt_ = true;

  CConfiguration* config_ = nullptr;  // null: no logs
  DiffType diff_type_ = DiffType::kAllBin;
  bool auto_file_naming_ = true;
  bool favor_low_memory_ = false;
  bool save_text_hex_c_array_ = false;
  int32_t max_process_threads_ = 0;
  double default_zoom_ = 1.0;
  std::string work_path_;
  std::string format_file_path_;
  std::string ieval_file_path_;

  bool force_thread_per_core_ = false;
  std::unique_ptr<WorkerPool> pool_;
  std::unique_ptr<JobRunner> jobs_;
  std::unique_ptr<COperationHost> operation_host_;
  std::unique_ptr<CIEvalList> saved_ievals_;
  CEditHistory edit_history_;
  CEditHistory kept_edit_history_;  // the file's, when not restored
  bool restore_edit_history_ = true;
  bool edit_history_unreadable_ = false;

  std::vector<MenuEntry> images_menu_;
  char message_[kMessageBufferSize] = {};
};

}  // namespace korvanel
