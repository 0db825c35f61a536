#include "app/app_state.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <system_error>

#include "app/configuration.h"
#include "app/new_image_name.h"
#include "app/operation_host.h"
#include "app/summary_line.h"
#include "app/writable_home.h"
#include "files/load_new_image.h"
#include "image/color_transform.h"
#include "image/image_concrete_base.h"
#include "image/text_util.h"
#include "ops/job_runner.h"
#include "ops/worker_pool.h"

namespace korvanel {

namespace {

constexpr const char* kOpenImageError = "Open image error";
constexpr const char* kNewImage = "New image";

FileAttributes ReadFileAttributes(const std::string& path) {
  FileAttributes attributes;
  std::error_code error;
  const auto size = std::filesystem::file_size(path, error);
  if (error) return attributes;
  const auto time = std::filesystem::last_write_time(path, error);
  if (error) return attributes;
  attributes.valid = true;
  attributes.size = size;
  attributes.last_write = time;
  return attributes;
}

// Folders, devices and pipes are no images: a pipe would block the reader.
bool IsReadableRegularFile(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error) || error) return false;
  return static_cast<bool>(std::ifstream(path, std::ios::binary));
}

bool SameSize(const IImageContainer& a, const IImageContainer& b) {
  uint32_t aw = 0, ah = 0, bw = 0, bh = 0;
  a.GetSize(aw, ah);
  b.GetSize(bw, bh);
  return aw == bw && ah == bh;
}

}  // namespace

AppState::AppState(IUserFeedback& feedback) : feedback_(feedback) {}

AppState::AppState(IUserFeedback& feedback, CConfiguration& config)
    : feedback_(feedback), config_(&config) {
  ApplyConfiguration(config.Values());
  SetFormatLog(&config.Logs().format_load);
  LoadFormats("");
  LoadEditHistory(config.Values().system.reload_dialogs_edit_history);
}

AppState::~AppState() {
  // The workers stop before anything they could refer to goes.
  jobs_.reset();
  operation_host_.reset();
  pool_.reset();
  // Lines still held (a run that ended on a failed command) reach their files.
  format_log_->Flush();
  if (config_ == nullptr) return;
  config_->Logs().batch.Flush();
  CLogger& log = config_->Logs().app;
  log.BeginEntry("Session end mark");
  log.Flush();
}

bool AppState::LoadConfiguration(const std::string& path) {
  if (config_ == nullptr || !config_->Load(path)) return false;
  ApplyConfiguration(config_->Values());
  return true;
}

void AppState::ApplyConfiguration(const ConfigValues& values) {
  max_comparison_party_ = static_cast<uint32_t>(values.system.max_comparison_party);
  close_option_ = static_cast<CloseOption>(values.system.app_close_prompt);
  max_process_threads_ = values.system.max_process_threads;
  auto_file_naming_ = values.system.auto_file_naming;
  favor_low_memory_ = values.developer.favor_low_mem_over_speed;
  save_text_hex_c_array_ = values.developer.save_image_text_hex_c_array;
  work_path_ = values.system.work_path;
  format_file_path_ = values.system.format_file_path;
  ieval_file_path_ = ResolveWritablePath(values.system.ieval_file_path).string();
  force_thread_per_core_ = values.developer.force_thread_per_core;
  diff_type_ = values.image.diff_type;
  default_zoom_ = values.gui.def_zoom;
  g_yuv_to_rgb = values.image.trans_yuv_to_rgb;
  g_rgb_to_yuv = values.image.trans_rgb_to_yuv;
}

// --- long operations ---------------------------------------------------------

JobRunner& AppState::Jobs() {
  if (!jobs_) {
    const uint32_t capacity = PoolCapacityFor(max_process_threads_, LogicalProcessorCount());
    if (capacity > 0) pool_ = std::make_unique<WorkerPool>(capacity, force_thread_per_core_);
    jobs_ = std::make_unique<JobRunner>(pool_.get());
    operation_host_ = std::make_unique<COperationHost>(feedback_, *jobs_);
  }
  // Batch console runs block; everything else may show a progress window.
  jobs_->SetRunHost(BatchConsoleMode() ? nullptr : operation_host_.get());
  return *jobs_;
}

bool AppState::OperationRunning() const { return operation_host_ && operation_host_->Running(); }

CIEvalList& AppState::SavedIEvals() {
  if (!saved_ievals_) ReloadSavedIEvals();
  return *saved_ievals_;
}

std::string AppState::SavedIEvalsPath() const {
  return ieval_file_path_.empty() ? "qel.ieval.txt" : ieval_file_path_;
}

void AppState::ReloadSavedIEvals() {
  if (!saved_ievals_) saved_ievals_ = std::make_unique<CIEvalList>();
  std::vector<std::string> messages;
  saved_ievals_->Load(SavedIEvalsPath(), messages);
  for (const std::string& message : messages) ShowMessage(message, "Load I-Eval list");
}

std::filesystem::path AppState::EditHistoryPath() const {
  if (config_ == nullptr) return {};
  return std::filesystem::path(work_path_) / kEditHistoryFileName;
}

void AppState::LoadEditHistory(bool restore) {
  restore_edit_history_ = restore;
  const std::filesystem::path path = EditHistoryPath();
  const LineReadStatus status = (restore ? edit_history_ : kept_edit_history_).Load(path);
  if (status == LineReadStatus::kOk || status == LineReadStatus::kMissing) return;
  // Writing over what could not be read would lose the user's entries.
  edit_history_unreadable_ = true;
  CLogger& log = config_->Logs().app;
  log.BeginEntry("Load dialog edit history");
  log.AddLine(path.string() + " " + LineReadProblem(status) +
              "; the dialog histories are not restored and the file is left as it is");
  log.Flush();
}

bool AppState::StoreEditHistory() const {
  const std::filesystem::path path = EditHistoryPath();
  if (path.empty() || edit_history_unreadable_) return false;
  if (restore_edit_history_) return edit_history_.Store(path);
  // Not restored, the file's entries still stay, under this session's.
  CEditHistory merged = kept_edit_history_;
  merged.AddNewer(edit_history_);
  return merged.Store(path);
}

// --- messages ----------------------------------------------------------------

const char* AppState::FormatMessage(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::vsnprintf(message_, sizeof(message_), format, args);
  va_end(args);
  return message_;
}

void AppState::ShowMessage(std::string_view text, std::string_view title, MessageStyle style) {
  if (config_ != nullptr) {
    CLogger& log = config_->Logs().app;
    log.BeginEntry(title);
    log.AddLine(text);
    log.Flush();
  }
  feedback_.ShowMessage(text, title, style);
}

void AppState::ReportBatchError(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::vsnprintf(message_, sizeof(message_), format, args);
  va_end(args);
  batch_failed_ = true;
  feedback_.BatchError(message_);
  if (config_ != nullptr) {
    std::string line = message_;
    if (!line.empty() && line.back() == '\n') line.pop_back();
    config_->Logs().batch.AddLine(line);
    config_->Logs().batch.Flush();
  }
}

void AppState::StatusMessage(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::vsnprintf(message_, sizeof(message_), format, args);
  va_end(args);
  LogStatusMessage(message_);
  feedback_.StatusMessage(message_);
}

void AppState::LogStatusMessage(std::string_view text) {
  if (config_ == nullptr || console_mode_) return;
  CLogger& log = config_->Logs().app;
  log.BeginEntry("Status bar");
  log.AddLine(text);
  log.Flush();
}

// --- opening -----------------------------------------------------------------

bool AppState::OpenImage(const std::string& path) { return OpenImage(path, format_rules_); }

bool AppState::OpenImage(const std::string& path, const FormatRules& rules) {
  if (!CheckRoomForImage()) return false;
  if (images_.FindPath(path)) return false;
  if (!IsReadableRegularFile(path)) {
    ShowMessage(FormatMessage("Can't locate %s", path.c_str()), "File doesn't exist");
    return false;
  }
  StatusMessage("Loading image %s...", path.c_str());
  LoadedImage loaded = LoadNewImage(path, rules, *format_log_, &Jobs());
  format_log_->Flush();
  if (loaded.image) {
    RegisterImage(std::move(loaded.image), path, std::move(loaded.format_text), true);
    return true;
  }
  if (BatchConsoleMode() || !open_raw_prompt_) {
    ShowMessage(FormatMessage("Can't open %s (unsupported format)", path.c_str()), kOpenImageError);
    return false;
  }
  return OpenWithPrompt(path);
}

bool AppState::LoadFormats(const std::string& path) {
  std::vector<std::string> candidates;
  if (!path.empty()) {
    candidates.push_back(path);
  } else {
    const std::filesystem::path configured(format_file_path_.empty() ? "Korvanel.fmt" : format_file_path_);
    candidates.push_back(configured.string());
    if (configured.is_relative()) candidates.push_back((ExecutableDirectory() / configured).string());
  }
  const bool ok = LoadFormatsFile(candidates, format_rules_, *format_log_);
  format_log_->Flush();
  return ok;
}

// Asks for an expression and size until one loads or the user cancels.
bool AppState::OpenWithPrompt(const std::string& path) {
  constexpr const char* kParseError = "Image format string parse error";
  OpenRawAnswer answer;
  while (feedback_.AskOpenRawFormat(path, answer)) {
    if (!SetDirectExpression(answer.expression, answer.width, answer.height, format_rules_.direct,
                             *format_log_) ||
        !format_rules_.direct.in_force) {
      ShowMessage(FormatMessage("Illegal format '%s'", answer.expression.c_str()), kParseError);
      continue;
    }
    LoadedImage loaded = LoadNewImage(path, format_rules_, *format_log_, &Jobs());
    format_log_->Flush();
    if (loaded.image) {
      RegisterImage(std::move(loaded.image), path, std::move(loaded.format_text), true);
      return true;
    }
    ShowMessage(FormatMessage("Can't open RAW format '%s'", answer.expression.c_str()), kParseError);
  }
  return false;
}

// --- registry ----------------------------------------------------------------

bool AppState::CheckRoomForImage() {
  if (!images_.Full()) return true;
  ShowMessage(FormatMessage("Too many open images, reached a max of %u",
                            static_cast<unsigned>(images_.Count())),
              kOpenImageError);
  return false;
}

size_t AppState::RegisterImage(std::unique_ptr<IImageContainer> image, std::string display_name,
                               std::string format_text, bool from_file) {
  if (!image || images_.Full()) return kNoIndex;
  ImageRecord record;
  record.serial = next_serial_++;
  uint32_t width = 0, height = 0;
  image->GetSize(width, height);
  record.summary = MakeSummaryLine(image->GetRawByteSize(), width, height, display_name);
  record.image = std::move(image);
  if (from_file) {
    record.path = display_name;
    record.file_attributes = ReadFileAttributes(display_name);
    record.watched = true;
  }
  record.display_name = std::move(display_name);
  record.format_text = std::move(format_text);
  const size_t index = images_.Append(std::move(record));

  if (!BatchConsoleMode()) RebuildImagesMenu();
  if (images_.Count() == 1) feedback_.HasImagesChanged(true);
  if (!(compare_mode_ && !comparison_group_.empty())) SetFocus(index);
  return index;
}

bool AppState::ReplaceImage(size_t index, std::unique_ptr<IImageContainer> image,
                            std::string format_text) {
  if (index >= images_.Count() || !image) return false;
  ImageRecord& record = images_.At(index);
  uint32_t width = 0, height = 0;
  image->GetSize(width, height);
  record.summary = MakeSummaryLine(image->GetRawByteSize(), width, height, record.display_name);
  record.image = std::move(image);
  record.format_text = std::move(format_text);
  images_.MarkChanged();
  MarkCreatedUnsaved(record.image.get());
  feedback_.RequestRepaint();
  return true;
}

void AppState::CloseImage(size_t index) {
  if (index >= images_.Count()) return;
  const uint64_t serial = images_.At(index).serial;
  std::erase(focus_history_, serial);

  // A comparison of two ends with the survivor in focus.
  bool left_compare = false;
  size_t survivor = kNoIndex;
  if (compare_mode_) {
    if (comparison_group_.size() == 2) {
      survivor = comparison_group_[0] == index ? comparison_group_[1] : comparison_group_[0];
      if (survivor > index) --survivor;
      compare_mode_ = false;
      left_compare = true;
    }
    if (const auto member = std::ranges::find(comparison_group_, index);
        member != comparison_group_.end()) {
      RemoveGroupPosition(static_cast<size_t>(member - comparison_group_.begin()));
    }
    for (size_t& member : comparison_group_) {
      if (member > index) --member;
    }
    if (left_compare) {
      comparison_group_.clear();
      ResetLayers();
    }
  }
  std::erase(collected_, index);
  for (size_t& member : collected_) {
    if (member > index) --member;
  }

  std::erase(unsaved_created_, serial);
  images_.Remove(index);
  images_menu_.clear();
  if (!BatchConsoleMode()) RebuildImagesMenu();

  if (images_.Empty()) {
    focus_index_ = kNoIndex;
    hover_index_ = kNoIndex;
    feedback_.HasImagesChanged(false);
    feedback_.RequestRepaint();
    return;
  }
  if (hover_index_ == index) hover_index_ = kNoIndex;
  else if (hover_index_ != kNoIndex && hover_index_ > index) --hover_index_;

  if (left_compare) {
    SetFocus(survivor);
  } else if (!compare_mode_) {
    std::optional<size_t> head;
    if (!focus_history_.empty()) head = images_.IndexOfSerial(focus_history_.front());
    SetFocus(head.value_or(0));
  } else {
    if (focus_index_ == index) focus_index_ = comparison_group_.empty() ? 0 : comparison_group_[0];
    else if (focus_index_ != kNoIndex && focus_index_ > index) --focus_index_;
    // In layer mode the focus image is the layer on show.
    if (layer_mode_ && visible_layer_ < comparison_group_.size()) {
      focus_index_ = comparison_group_[visible_layer_];
    }
    feedback_.RequestRepaint();
  }
}

void AppState::CloseAllImages() {
  // All at once: closing one by one would refocus every survivor on the way.
  while (!images_.Empty()) images_.Remove(images_.Count() - 1);
  focus_history_.clear();
  unsaved_created_.clear();
  comparison_group_.clear();
  collected_.clear();
  compare_mode_ = collecting_ = false;
  ResetLayers();
  focus_index_ = hover_index_ = kNoIndex;
  images_menu_.clear();
  feedback_.ImagesMenuChanged(images_menu_, std::nullopt);
  feedback_.HasImagesChanged(false);
  feedback_.RequestRepaint();
}

std::vector<size_t> AppState::ChangedFiles() const {
  std::vector<size_t> changed;
  for (size_t i = 0; i < images_.Count(); ++i) {
    const ImageRecord& record = images_.At(i);
    if (!record.watched || record.path.empty()) continue;
    const FileAttributes now = ReadFileAttributes(record.path);
    if (now.valid && now.last_write != record.file_attributes.last_write) changed.push_back(i);
  }
  return changed;
}

void AppState::ReleaseHiddenRenditions() {
  for (size_t i = 0; i < images_.Count(); ++i) {
    const bool shown = compare_mode_ ? std::ranges::find(comparison_group_, i) != comparison_group_.end()
                                     : i == focus_index_;
    auto* image = dynamic_cast<CImageConcreteBase*>(images_.At(i).image.get());
    if (!shown && image != nullptr) image->ReleaseDisplay();
  }
}

bool AppState::ReloadImage(size_t index, bool keep_format) {
  if (index >= images_.Count() || images_.At(index).path.empty()) return false;
  ImageRecord& record = images_.At(index);
  // Asked once per change: a file that fails to load is not asked about
  // again until it changes once more.
  record.file_attributes = ReadFileAttributes(record.path);
  FormatRules rules = format_rules_;
  rules.direct.in_force = false;
  if (keep_format) {
    uint32_t width = 0, height = 0;
    record.image->GetSize(width, height);
    if (!SetDirectExpression(record.format_text, width, height, rules.direct, *format_log_)) {
      rules.direct.in_force = false;
    }
  }
  LoadedImage loaded = LoadNewImage(record.path, rules, *format_log_, &Jobs());
  format_log_->Flush();
  if (!loaded.image) {
    ShowMessage(FormatMessage("Can't open %s (unsupported format)", record.path.c_str()),
                kOpenImageError);
    return false;
  }
  uint32_t width = 0, height = 0;
  loaded.image->GetSize(width, height);
  record.summary =
      MakeSummaryLine(loaded.image->GetRawByteSize(), width, height, record.display_name);
  record.image = std::move(loaded.image);
  record.format_text = std::move(loaded.format_text);
  images_.MarkChanged();
  feedback_.RequestRepaint();
  return true;
}

bool AppState::NewImageFromView() { return NewImageFrom(true); }

bool AppState::NewDuplicateFromView() { return NewImageFrom(false); }

bool AppState::NewImageFrom(bool allow_crop) {
  if (images_.Empty()) return false;
  size_t source = hover_index_;
  if (source == kNoIndex || source >= images_.Count()) {
    source = compare_mode_ ? kNoIndex : focus_index_;
    if (source == kNoIndex || source >= images_.Count()) {
      StatusMessage("%s error: Please make sure you're in some valid image area", kNewImage);
      return false;
    }
  }
  if (!CheckRoomForImage()) return false;

  const ImageRecord& record = images_.At(source);
  const Rect roi = record.image->GetRegionOfInterest();
  const bool crop = allow_crop && !roi.IsNone() && roi.Contains(cursor_x_, cursor_y_);
  std::unique_ptr<IImageContainer> copy =
      record.image->Duplicate(crop ? DuplicateArea::RegionOfInterest : DuplicateArea::WholeImage);
  if (!copy) {
    StatusMessage("%s error: Please make sure you're in some valid image area", kNewImage);
    return false;
  }
  const std::string& source_name = record.path.empty() ? record.display_name : record.path;
  std::string name = MakeNewImageName(source_name, crop ? &roi : nullptr);
  std::string format_text = record.format_text;

  const IImageContainer* created = copy.get();
  const size_t index = RegisterImage(std::move(copy), name, std::move(format_text), false);
  if (index == kNoIndex) return false;
  MarkCreatedUnsaved(created);
  StatusMessage("New image: Successfully created %s (HK id %u)", name.c_str(),
                images_.At(index).hk_id);
  return true;
}

// --- focus and comparison ----------------------------------------------------

void AppState::SetFocus(size_t index) {
  if (index >= images_.Count()) return;
  focus_index_ = index;
  if (!compare_mode_) {
    // Move to the front rather than repeat: the list stays one entry per image.
    const uint64_t serial = images_.At(index).serial;
    std::erase(focus_history_, serial);
    focus_history_.push_front(serial);
  }
  if (BatchConsoleMode()) {
    feedback_.RequestRepaint();
    return;
  }
  if (!compare_mode_) {
    const ImageRecord& record = images_.At(index);
    uint32_t width = 0, height = 0;
    record.image->GetSize(width, height);
    StatusMessage("%ux%u : %s", width, height, record.image->FormatLabel().c_str());
  }
  feedback_.ImagesMenuChanged(images_menu_, index);
  feedback_.RequestRepaint();
}

void AppState::SetHover(size_t index, int32_t cursor_x, int32_t cursor_y) {
  hover_index_ = index;
  cursor_x_ = cursor_x;
  cursor_y_ = cursor_y;
}

std::vector<size_t> AppState::FocusHistory() const {
  std::vector<size_t> indices;
  for (uint64_t serial : focus_history_) {
    if (auto index = images_.IndexOfSerial(serial)) indices.push_back(*index);
  }
  return indices;
}

void AppState::BeginCollecting() {
  collecting_ = true;
  collected_.clear();
  ShowCollectingStatus(collected_);
}

void AppState::EndCollecting() {
  collecting_ = false;
  collected_.clear();
}

void AppState::LeaveCompareMode() {
  compare_mode_ = false;
  collecting_ = false;
  comparison_group_.clear();
  collected_.clear();
  ResetLayers();
  if (focus_index_ != kNoIndex) SetFocus(focus_index_);
}

std::vector<size_t> AppState::GatherLike(size_t anchor) const {
  std::vector<size_t> gathered;
  const IImageContainer& like = *images_.At(anchor).image;
  for (size_t i = 0; i < images_.Count(); ++i) {
    if (SameSize(*images_.At(i).image, like)) gathered.push_back(i);
  }
  return gathered;
}

void AppState::CompareImages(const std::vector<size_t>& indices) {
  std::vector<size_t> group;
  for (size_t index : indices) {
    if (index < images_.Count() && SameSize(*images_.At(index).image, *images_.At(indices[0]).image)) {
      group.push_back(index);
    }
  }
  if (group.size() < 2) {
    LeaveCompareMode();
    return;
  }
  StartComparing(std::move(group));
}

void AppState::ForceComparison(std::vector<size_t> indices) { StartComparing(std::move(indices)); }

void AppState::CompareAllLike(size_t anchor) {
  if (anchor >= images_.Count()) return;
  SetFocus(anchor);
  collecting_ = true;
  CollectForCompare(kNoIndex);
}

void AppState::StartComparing(std::vector<size_t> group) {
  collecting_ = false;
  collected_.clear();
  comparison_group_ = std::move(group);
  compare_mode_ = true;
  ResetLayers();  // a new party starts side by side
  feedback_.RequestRepaint();
}

void AppState::RemoveFromComparison(size_t index) {
  if (!compare_mode_) return;
  const auto member = std::ranges::find(comparison_group_, index);
  if (member == comparison_group_.end()) return;
  RemoveGroupPosition(static_cast<size_t>(member - comparison_group_.begin()));
  if (comparison_group_.size() < 2) {
    LeaveCompareMode();
    return;
  }
  if (focus_index_ == index) focus_index_ = comparison_group_[layer_mode_ ? visible_layer_ : 0];
  feedback_.RequestRepaint();
}

// --- layer mode --------------------------------------------------------------

void AppState::ResetLayers() {
  layer_mode_ = false;
  visible_layer_ = previous_layer_ = 0;
}

// The layers behind a removed group position move down one place; a layer
// that was the removed one becomes the member that took its place.
void AppState::RemoveGroupPosition(size_t position) {
  comparison_group_.erase(comparison_group_.begin() + static_cast<std::ptrdiff_t>(position));
  const size_t last = comparison_group_.empty() ? 0 : comparison_group_.size() - 1;
  for (size_t* layer : {&visible_layer_, &previous_layer_}) {
    if (*layer > position) --*layer;
    *layer = std::min(*layer, last);
  }
}

bool AppState::SetLayerMode(bool on) {
  if (on && !compare_mode_) return false;
  if (on == layer_mode_) return true;
  layer_mode_ = on;
  if (on) {
    const auto focus = std::ranges::find(comparison_group_, focus_index_);
    visible_layer_ = focus == comparison_group_.end()
                         ? 0
                         : static_cast<size_t>(focus - comparison_group_.begin());
    previous_layer_ = visible_layer_;
    if (!comparison_group_.empty()) focus_index_ = comparison_group_[visible_layer_];
  }
  feedback_.RequestRepaint();
  return true;
}

bool AppState::SetVisibleLayer(size_t layer) {
  if (!layer_mode_ || layer >= comparison_group_.size() || layer == visible_layer_) return false;
  previous_layer_ = visible_layer_;
  visible_layer_ = layer;
  SetFocus(comparison_group_[layer]);
  return true;
}

void AppState::ShowCollectingStatus(const std::vector<size_t>& collected) {
  std::string text = "Collecting images to compare: ";
  for (size_t index : collected) text += StrFormat("[%u] ", images_.At(index).hk_id);
  StatusMessage("%s", text.c_str());
}

void AppState::CollectForCompare(size_t index) {
  if (index == kNoIndex) {
    if (images_.Count() < 2 || focus_index_ >= images_.Count()) {
      LeaveCompareMode();
      return;
    }
    std::vector<size_t> gathered = GatherLike(focus_index_);
    if (gathered.size() > max_comparison_party_) {
      ShowMessage(FormatMessage("Too many images to compare, reached a max of %d",
                                static_cast<int>(max_comparison_party_)),
                  "Compare images error");
      gathered.clear();
    }
    if (gathered.size() <= 1) {
      LeaveCompareMode();
      return;
    }
    StartComparing(std::move(gathered));
    return;
  }

  if (index >= images_.Count()) return;
  if (!collected_.empty() && collected_.back() == index) {
    // Pressing the last key again ends collecting.
    const std::vector<size_t> shown = collected_;
    if (collected_.size() > 1) StartComparing(collected_);
    ShowCollectingStatus(shown);
    return;
  }
  if (collected_.empty() ||
      SameSize(*images_.At(index).image, *images_.At(collected_.back()).image)) {
    collected_.push_back(index);
  }
  // The status names the images of this key, also when it starts comparing.
  const std::vector<size_t> shown = collected_;
  if (collected_.size() >= max_comparison_party_) StartComparing(collected_);
  ShowCollectingStatus(shown);
}

// --- unsaved results and exit ------------------------------------------------

uint64_t AppState::SerialOf(const IImageContainer* image) const {
  for (size_t i = 0; i < images_.Count(); ++i) {
    if (images_.At(i).image.get() == image) return images_.At(i).serial;
  }
  return 0;
}

void AppState::MarkCreatedUnsaved(const IImageContainer* image) {
  const uint64_t serial = SerialOf(image);
  if (serial != 0 && std::find(unsaved_created_.begin(), unsaved_created_.end(), serial) ==
                         unsaved_created_.end()) {
    unsaved_created_.push_back(serial);
  }
}

void AppState::MarkSaved(const IImageContainer* image) { ForgetSerial(SerialOf(image)); }

void AppState::ForgetSerial(uint64_t serial) { std::erase(unsaved_created_, serial); }

bool AppState::IsCreatedUnsaved(const IImageContainer* image) const {
  const uint64_t serial = SerialOf(image);
  return serial != 0 &&
         std::find(unsaved_created_.begin(), unsaved_created_.end(), serial) !=
             unsaved_created_.end();
}

bool AppState::ConfirmExit() {
  switch (close_option_) {
    case CloseOption::Never: return true;
    case CloseOption::Always: return feedback_.AskYesNo("Are you sure to want to exit?", "App exit");
    case CloseOption::NewCreatedImage:
      if (unsaved_created_.empty()) return true;
      return feedback_.AskYesNo("Some images were created but weren't saved! Confirm exit?",
                                "App exit");
  }
  return true;
}

// --- log switches ------------------------------------------------------------

bool AppState::AppLogEnabled() const { return config_ != nullptr && config_->Logs().app.Enabled(); }

void AppState::SetAppLogEnabled(bool on) {
  if (config_ == nullptr) return;
  config_->Logs().app.SetEnabled(on);
  config_->MutableValues().developer.log_app_msg.enabled = on;
}

bool AppState::FormatLogEnabled() const {
  return config_ != nullptr && config_->Logs().format_load.Enabled();
}

void AppState::SetFormatLogEnabled(bool on) {
  if (config_ == nullptr) return;
  config_->Logs().format_load.SetEnabled(on);
  config_->MutableValues().developer.debug_load_format_log.enabled = on;
}

// --- menu --------------------------------------------------------------------

void AppState::RebuildImagesMenu() {
  images_menu_.clear();
  for (size_t i = 0; i < images_.Count(); ++i) {
    const ImageRecord& record = images_.At(i);
    images_menu_.push_back({StrFormat("[%u] %s", record.hk_id, record.display_name.c_str()),
                            kMenuCommandBase + static_cast<uint32_t>(i)});
  }
  feedback_.ImagesMenuChanged(images_menu_, focus_index_ < images_.Count()
                                                ? std::optional<size_t>(focus_index_)
                                                : std::nullopt);
}

}  // namespace korvanel
