#pragma once

// Every setting of the configuration file, grouped by its section. The
// defaults are not written here: they come from the key table
// (config_keys.cpp), the one place that also gives each key's kind and range.

#include <cstdint>
#include <string>
#include <vector>

#include "app/logger.h"
#include "image/color_transform.h"

namespace korvanel {

struct Rgb {
  uint8_t r = 0;
  uint8_t g = 0;
  uint8_t b = 0;
  friend bool operator==(const Rgb&, const Rgb&) = default;
};

struct FontSpec {
  std::string name;  // blanks already in place of "_"
  int32_t size = 0;
  int32_t small_size = 0;
  friend bool operator==(const FontSpec&, const FontSpec&) = default;
};

// A log switch with its file name ("1, qel.log_app.txt"); the file lives in
// the work path.
struct LogSetting {
  bool enabled = false;
  StampMode stamp_mode = StampMode::kSession;
  std::string file_name;
  friend bool operator==(const LogSetting&, const LogSetting&) = default;
};

// Enumerations, in the order of their configuration words.
enum class PixelBase : int32_t { kDec, kHex };
enum class DiffType : int32_t { kAllBin, kAllAbsDelta, kMaskBin, kMaskAbsDelta };
enum class ClosePrompt : int32_t { kNever, kAlways, kNewCreatedImage };
enum class ImageTypeChoice : int32_t { kYuv444, kYuv422, kYuv420, kGray, kRgb };
enum class PackingChoice : int32_t { kPlanner, kInterleave };
enum class BppChoice : int32_t { k8, k16, k32 };
enum class IevalBppChoice : int32_t { kByInput, k8, k16, k32 };
enum class OutputChannels : int32_t { kContext, kContextAsYuv, kSingle };
enum class RulerSpacing : int32_t { kScreen, kImage };

struct ConfigGui {
  std::vector<Rgb> ruler_color;
  FontSpec ruler_font;
  FontSpec tab_font;
  std::vector<Rgb> tab_color_fg_bg_hl;  // always three: foreground, background, highlight
  PixelBase pixel_display_base = PixelBase::kDec;
  bool value_comma_decorate = false;
  int32_t histogram_max_height = 0;
  bool histogram_transparent = false;
  bool histogram_transparent_shadow = false;
  std::vector<Rgb> histogram_transparent_fg_color;
  double def_zoom = 1.0;  // 0: fit to window
  bool ruler_mode = false;
  bool ruler_type_matrix = false;
  bool grid_mode = false;
  bool pixel_value_mode = false;
  bool coord_track_mode = false;
  bool coord_ofs_mode = false;
  friend bool operator==(const ConfigGui&, const ConfigGui&) = default;
};

struct ConfigImage {
  // The built-in matrices, so that applying default values never zeroes
  // the process-wide transforms.
  ColorTransform trans_yuv_to_rgb = kDefaultYuvToRgb;
  ColorTransform trans_rgb_to_yuv = kDefaultRgbToYuv;
  DiffType diff_type = DiffType::kAllBin;
  friend bool operator==(const ConfigImage&, const ConfigImage&) = default;
};

struct ConfigDialogConvert {
  ImageTypeChoice type = ImageTypeChoice::kGray;
  PackingChoice packing = PackingChoice::kPlanner;
  BppChoice bpp = BppChoice::k8;
  bool little_end = false;
  bool custom_color_trans_on = false;
  std::string def_trans_c1;
  std::string def_trans_c2;
  std::string def_trans_c3;
  bool resize_on = false;
  std::string def_resize_size;
  std::string def_resize_pos_ofs;
  bool resize_tiled_on = false;
  friend bool operator==(const ConfigDialogConvert&, const ConfigDialogConvert&) = default;
};

struct ConfigDialogFilter {
  std::string def_filter;
  std::string def_neg;
  bool apply_to_all = false;
  bool apply_to_new = false;
  bool all_3_must_pass = false;
  bool separate_comp = false;
  friend bool operator==(const ConfigDialogFilter&, const ConfigDialogFilter&) = default;
};

struct ConfigDialogIeval {
  std::string def_ieval_expr;
  std::string def_out_of_range_val;
  std::string def_output_overwrite;
  bool out_replace_image = false;
  bool apply_on_roi = false;
  OutputChannels output_channels = OutputChannels::kContext;
  IevalBppChoice bpp = IevalBppChoice::kByInput;
  bool overwrite_saved_ieval = false;
  bool compare_mode_auto_new = false;
  friend bool operator==(const ConfigDialogIeval&, const ConfigDialogIeval&) = default;
};

struct ConfigDialogOpen {
  std::string def_width;
  std::string def_height;
  std::string def_offset;
  ImageTypeChoice type = ImageTypeChoice::kGray;
  bool ascii = false;
  PackingChoice packing = PackingChoice::kPlanner;
  BppChoice bpp = BppChoice::k8;
  bool little_end = false;
  friend bool operator==(const ConfigDialogOpen&, const ConfigDialogOpen&) = default;
};

struct ConfigDialogRuler {
  std::vector<int32_t> crd_screen;  // spacing x, y in screen pixels
  std::vector<int32_t> crd_image;   // spacing x, y, offset x, y in image pixels
  RulerSpacing cfg_type = RulerSpacing::kScreen;
  friend bool operator==(const ConfigDialogRuler&, const ConfigDialogRuler&) = default;
};

struct ConfigDialogFileModify {
  // The transposed letters are the key's established spelling.
  bool try_relaod_same_file_cfg = false;
  friend bool operator==(const ConfigDialogFileModify&, const ConfigDialogFileModify&) = default;
};

struct ConfigSystem {
  std::string work_path;
  std::string format_file_path;
  std::string ieval_file_path;
  bool ieval_load_saved_startup_only = false;
  bool reload_dialogs_edit_history = false;
  int32_t max_comparison_party = 0;
  bool ignore_file_extern_modify = false;
  bool auto_file_naming = false;
  bool auto_check_updates = false;
  int32_t max_process_threads = 0;  // 0: every logical processor, -1: no workers
  ClosePrompt app_close_prompt = ClosePrompt::kNewCreatedImage;
  // The update document and the download page; empty: no network at all.
  std::string update_check_url;
  std::string update_download_url;
  friend bool operator==(const ConfigSystem&, const ConfigSystem&) = default;
};

struct ConfigDeveloper {
  LogSetting debug_load_format_log;
  LogSetting debug_batch_error_log;
  LogSetting log_app_msg;
  bool save_image_text_hex_c_array = false;
  bool force_thread_per_core = false;
  bool favor_low_mem_over_speed = false;
  friend bool operator==(const ConfigDeveloper&, const ConfigDeveloper&) = default;
};

struct ConfigValues {
  ConfigGui gui;
  ConfigImage image;
  ConfigDialogConvert dialog_convert;
  ConfigDialogFilter dialog_filter;
  ConfigDialogIeval dialog_ieval;
  ConfigDialogOpen dialog_open;
  ConfigDialogRuler dialog_ruler;
  ConfigDialogFileModify dialog_file_modify;
  ConfigSystem system;
  ConfigDeveloper developer;
  friend bool operator==(const ConfigValues&, const ConfigValues&) = default;
};

}  // namespace korvanel
