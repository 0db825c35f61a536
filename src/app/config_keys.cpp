#include "app/config_keys.h"

namespace korvanel {

const char* const kConfigSectionNames[kConfigSectionCount] = {
    "gui",         "image",        "dialog_convert",     "dialog_filter", "dialog_ieval",
    "dialog_open", "dialog_ruler", "dialog_file_modify", "system",        "developer",
};

namespace {

using S = ConfigSection;
using K = ValueKind;

template <auto kMember>
constexpr FieldAccess Gui() {
  return Field<&ConfigValues::gui, kMember>();
}
template <auto kMember>
constexpr FieldAccess Image() {
  return Field<&ConfigValues::image, kMember>();
}
template <auto kMember>
constexpr FieldAccess Convert() {
  return Field<&ConfigValues::dialog_convert, kMember>();
}
template <auto kMember>
constexpr FieldAccess Filter() {
  return Field<&ConfigValues::dialog_filter, kMember>();
}
template <auto kMember>
constexpr FieldAccess Ieval() {
  return Field<&ConfigValues::dialog_ieval, kMember>();
}
template <auto kMember>
constexpr FieldAccess Open() {
  return Field<&ConfigValues::dialog_open, kMember>();
}
template <auto kMember>
constexpr FieldAccess Ruler() {
  return Field<&ConfigValues::dialog_ruler, kMember>();
}
template <auto kMember>
constexpr FieldAccess FileModify() {
  return Field<&ConfigValues::dialog_file_modify, kMember>();
}
template <auto kMember>
constexpr FieldAccess System() {
  return Field<&ConfigValues::system, kMember>();
}
template <auto kMember>
constexpr FieldAccess Developer() {
  return Field<&ConfigValues::developer, kMember>();
}

constexpr EnumWord kBoolWords[] = {{"0", 0},  {"1", 1},   {"false", 0}, {"true", 1},
                                   {"no", 0}, {"yes", 1}, {"off", 0},   {"on", 1}};
constexpr EnumWord kPixelBaseWords[] = {{"dec", 0}, {"hex", 1}, {"10", 0}, {"16", 1}};
constexpr EnumWord kDiffTypeWords[] = {
    {"all_bin", 0}, {"all_abs_delta", 1}, {"mask_bin", 2}, {"mask_abs_delta", 3}};
constexpr EnumWord kClosePromptWords[] = {{"never", 0}, {"always", 1}, {"new_created_image", 2}};
constexpr EnumWord kImageTypeWords[] = {
    {"yuv444", 0}, {"yuv422", 1}, {"yuv420", 2}, {"gray", 3}, {"rgb", 4}};
constexpr EnumWord kPackingWords[] = {{"planner", 0}, {"interleave", 1}};
constexpr EnumWord kBppWords[] = {{"8b", 0}, {"16b", 1}, {"32b", 2}};
constexpr EnumWord kIevalBppWords[] = {{"by_input", 0}, {"8b", 1}, {"16b", 2}, {"32b", 3}};
constexpr EnumWord kOutputChannelWords[] = {{"context", 0}, {"context_as_yuv", 1}, {"single", 2}};
constexpr EnumWord kRulerSpacingWords[] = {{"screen", 0}, {"image", 1}};

constexpr IntRange kCrdScreenRanges[] = {{1, 10000}, {1, 10000}};
constexpr IntRange kCrdImageRanges[] = {{1, 100000}, {1, 100000}, {0, 100000}, {0, 100000}};

// Font sizes in points; the log switch: 0 off, 1 on, 2 on with a time stamp
// on every entry.
constexpr int32_t kMinFont = 4;
constexpr int32_t kMaxFont = 200;

constexpr const char* kDefaultYuvToRgbText =
    "1.0, 0.0, 1.402, 0, 1.0, -0.34414, -0.71414, -128, 1.0, 1.772, 0.0, -128";
constexpr const char* kDefaultRgbToYuvText =
    "0.299, 0.587, 0.114, 0, -0.168736, -0.331264, 0.5, 128, 0.5, -0.418688, -0.081312, 128";

const KeyEntry kKeys[] = {
    // [gui]
    {S::kGui, "ruler_color", K::kColorList, "red, white", Gui<&ConfigGui::ruler_color>(), 1, 8},
    {S::kGui, "ruler_font", K::kFont, "Arial, 16, 12", Gui<&ConfigGui::ruler_font>(), kMinFont,
     kMaxFont},
    {S::kGui, "tab_font", K::kFont, "Arial, 16, 12", Gui<&ConfigGui::tab_font>(), kMinFont,
     kMaxFont},
    {S::kGui, "tab_color_fg_bg_hl", K::kColorList, "white, <150;30;20>, <200;70;0>",
     Gui<&ConfigGui::tab_color_fg_bg_hl>(), 3, 3},
    {S::kGui, "pixel_display_base", K::kEnum, "dec", Gui<&ConfigGui::pixel_display_base>(), 0, 0,
     kPixelBaseWords},
    {S::kGui, "value_comma_decorate", K::kBool, "0", Gui<&ConfigGui::value_comma_decorate>()},
    {S::kGui, "histogram_max_height", K::kInt, "80", Gui<&ConfigGui::histogram_max_height>(), 30,
     120},
    {S::kGui, "histogram_transparent", K::kBool, "0", Gui<&ConfigGui::histogram_transparent>()},
    {S::kGui, "histogram_transparent_shadow", K::kBool, "0",
     Gui<&ConfigGui::histogram_transparent_shadow>()},
    {S::kGui, "histogram_transparent_fg_color", K::kColorList, "white, black",
     Gui<&ConfigGui::histogram_transparent_fg_color>(), 1, 6},
    {S::kGui, "def_zoom", K::kReal, "1.0", Gui<&ConfigGui::def_zoom>(), 0, 100},
    {S::kGui, "ruler_mode", K::kBool, "0", Gui<&ConfigGui::ruler_mode>()},
    {S::kGui, "ruler_type_matrix", K::kBool, "0", Gui<&ConfigGui::ruler_type_matrix>()},
    {S::kGui, "grid_mode", K::kBool, "0", Gui<&ConfigGui::grid_mode>()},
    {S::kGui, "pixel_value_mode", K::kBool, "0", Gui<&ConfigGui::pixel_value_mode>()},
    {S::kGui, "coord_track_mode", K::kBool, "0", Gui<&ConfigGui::coord_track_mode>()},
    {S::kGui, "coord_ofs_mode", K::kBool, "0", Gui<&ConfigGui::coord_ofs_mode>()},
    // [image]
    {S::kImage, "trans_yuv_to_rgb", K::kMatrix, kDefaultYuvToRgbText,
     Image<&ConfigImage::trans_yuv_to_rgb>()},
    {S::kImage, "trans_rgb_to_yuv", K::kMatrix, kDefaultRgbToYuvText,
     Image<&ConfigImage::trans_rgb_to_yuv>()},
    {S::kImage, "diff_type", K::kEnum, "all_bin", Image<&ConfigImage::diff_type>(), 0, 0,
     kDiffTypeWords},
    // [dialog_convert]
    {S::kDialogConvert, "type", K::kEnum, "gray", Convert<&ConfigDialogConvert::type>(), 0, 0,
     kImageTypeWords},
    {S::kDialogConvert, "packing", K::kEnum, "planner", Convert<&ConfigDialogConvert::packing>(), 0,
     0, kPackingWords},
    {S::kDialogConvert, "bpp", K::kEnum, "8b", Convert<&ConfigDialogConvert::bpp>(), 0, 0,
     kBppWords},
    {S::kDialogConvert, "little_end", K::kBool, "1", Convert<&ConfigDialogConvert::little_end>()},
    {S::kDialogConvert, "custom_color_trans_on", K::kBool, "0",
     Convert<&ConfigDialogConvert::custom_color_trans_on>()},
    {S::kDialogConvert, "def_trans_c1", K::kText, "",
     Convert<&ConfigDialogConvert::def_trans_c1>()},
    {S::kDialogConvert, "def_trans_c2", K::kText, "",
     Convert<&ConfigDialogConvert::def_trans_c2>()},
    {S::kDialogConvert, "def_trans_c3", K::kText, "",
     Convert<&ConfigDialogConvert::def_trans_c3>()},
    {S::kDialogConvert, "resize_on", K::kBool, "0", Convert<&ConfigDialogConvert::resize_on>()},
    {S::kDialogConvert, "def_resize_size", K::kText, "",
     Convert<&ConfigDialogConvert::def_resize_size>()},
    {S::kDialogConvert, "def_resize_pos_ofs", K::kText, "",
     Convert<&ConfigDialogConvert::def_resize_pos_ofs>()},
    {S::kDialogConvert, "resize_tiled_on", K::kBool, "0",
     Convert<&ConfigDialogConvert::resize_tiled_on>()},
    // [dialog_filter]
    {S::kDialogFilter, "def_filter", K::kText, "", Filter<&ConfigDialogFilter::def_filter>()},
    {S::kDialogFilter, "def_neg", K::kText, "", Filter<&ConfigDialogFilter::def_neg>()},
    {S::kDialogFilter, "apply_to_all", K::kBool, "0", Filter<&ConfigDialogFilter::apply_to_all>()},
    {S::kDialogFilter, "apply_to_new", K::kBool, "0", Filter<&ConfigDialogFilter::apply_to_new>()},
    {S::kDialogFilter, "all_3_must_pass", K::kBool, "0",
     Filter<&ConfigDialogFilter::all_3_must_pass>()},
    {S::kDialogFilter, "separate_comp", K::kBool, "0",
     Filter<&ConfigDialogFilter::separate_comp>()},
    // [dialog_ieval]
    {S::kDialogIeval, "def_ieval_expr", K::kText, "", Ieval<&ConfigDialogIeval::def_ieval_expr>()},
    {S::kDialogIeval, "def_out_of_range_val", K::kText, "",
     Ieval<&ConfigDialogIeval::def_out_of_range_val>()},
    {S::kDialogIeval, "def_output_overwrite", K::kText, "",
     Ieval<&ConfigDialogIeval::def_output_overwrite>()},
    {S::kDialogIeval, "out_replace_image", K::kBool, "0",
     Ieval<&ConfigDialogIeval::out_replace_image>()},
    {S::kDialogIeval, "apply_on_roi", K::kBool, "0", Ieval<&ConfigDialogIeval::apply_on_roi>()},
    {S::kDialogIeval, "output_channels", K::kEnum, "context",
     Ieval<&ConfigDialogIeval::output_channels>(), 0, 0, kOutputChannelWords},
    {S::kDialogIeval, "bpp", K::kEnum, "by_input", Ieval<&ConfigDialogIeval::bpp>(), 0, 0,
     kIevalBppWords},
    {S::kDialogIeval, "overwrite_saved_ieval", K::kBool, "0",
     Ieval<&ConfigDialogIeval::overwrite_saved_ieval>()},
    {S::kDialogIeval, "compare_mode_auto_new", K::kBool, "1",
     Ieval<&ConfigDialogIeval::compare_mode_auto_new>()},
    // [dialog_open]
    {S::kDialogOpen, "def_width", K::kText, "", Open<&ConfigDialogOpen::def_width>()},
    {S::kDialogOpen, "def_height", K::kText, "", Open<&ConfigDialogOpen::def_height>()},
    {S::kDialogOpen, "def_offset", K::kText, "", Open<&ConfigDialogOpen::def_offset>()},
    {S::kDialogOpen, "type", K::kEnum, "gray", Open<&ConfigDialogOpen::type>(), 0, 0,
     kImageTypeWords},
    {S::kDialogOpen, "ascii", K::kBool, "0", Open<&ConfigDialogOpen::ascii>()},
    {S::kDialogOpen, "packing", K::kEnum, "planner", Open<&ConfigDialogOpen::packing>(), 0, 0,
     kPackingWords},
    {S::kDialogOpen, "bpp", K::kEnum, "8b", Open<&ConfigDialogOpen::bpp>(), 0, 0, kBppWords},
    {S::kDialogOpen, "little_end", K::kBool, "1", Open<&ConfigDialogOpen::little_end>()},
    // [dialog_ruler]
    {S::kDialogRuler,
     "crd_screen",
     K::kIntList,
     "100, 100",
     Ruler<&ConfigDialogRuler::crd_screen>(),
     0,
     0,
     {},
     kCrdScreenRanges},
    {S::kDialogRuler,
     "crd_image",
     K::kIntList,
     "10, 10, 0, 0",
     Ruler<&ConfigDialogRuler::crd_image>(),
     0,
     0,
     {},
     kCrdImageRanges},
    {S::kDialogRuler, "cfg_type", K::kEnum, "screen", Ruler<&ConfigDialogRuler::cfg_type>(), 0, 0,
     kRulerSpacingWords},
    // [dialog_file_modify]
    {S::kDialogFileModify, "try_relaod_same_file_cfg", K::kBool, "1",
     FileModify<&ConfigDialogFileModify::try_relaod_same_file_cfg>()},
    // [system]
    {S::kSystem, "work_path", K::kDirectory, "", System<&ConfigSystem::work_path>()},
    {S::kSystem, "format_file_path", K::kText, "Korvanel.fmt",
     System<&ConfigSystem::format_file_path>()},
    {S::kSystem, "ieval_file_path", K::kText, "qel.ieval.txt",
     System<&ConfigSystem::ieval_file_path>()},
    {S::kSystem, "ieval_load_saved_startup_only", K::kBool, "0",
     System<&ConfigSystem::ieval_load_saved_startup_only>()},
    {S::kSystem, "reload_dialogs_edit_history", K::kBool, "1",
     System<&ConfigSystem::reload_dialogs_edit_history>()},
    {S::kSystem, "max_comparison_party", K::kInt, "6",
     System<&ConfigSystem::max_comparison_party>(), 2, 8},
    {S::kSystem, "ignore_file_extern_modify", K::kBool, "0",
     System<&ConfigSystem::ignore_file_extern_modify>()},
    {S::kSystem, "auto_file_naming", K::kBool, "1", System<&ConfigSystem::auto_file_naming>()},
    {S::kSystem, "auto_check_updates", K::kBool, "1", System<&ConfigSystem::auto_check_updates>()},
    {S::kSystem, "max_process_threads", K::kInt, "0", System<&ConfigSystem::max_process_threads>(),
     -1, 32},
    {S::kSystem, "app_close_prompt", K::kEnum, "new_created_image",
     System<&ConfigSystem::app_close_prompt>(), 0, 0, kClosePromptWords},
    {S::kSystem, "update_check_url", K::kText, "", System<&ConfigSystem::update_check_url>()},
    {S::kSystem, "update_download_url", K::kText, "", System<&ConfigSystem::update_download_url>()},
    // [developer]
    {S::kDeveloper, "debug_load_format_log", K::kLog, "1, qel.log_fmt.txt",
     Developer<&ConfigDeveloper::debug_load_format_log>(), 0, 2},
    {S::kDeveloper, "debug_batch_error_log", K::kLog, "1, qel.log_batch.txt",
     Developer<&ConfigDeveloper::debug_batch_error_log>(), 0, 2},
    {S::kDeveloper, "log_app_msg", K::kLog, "1, qel.log_app.txt",
     Developer<&ConfigDeveloper::log_app_msg>(), 0, 2},
    {S::kDeveloper, "save_image_text_hex_c_array", K::kBool, "0",
     Developer<&ConfigDeveloper::save_image_text_hex_c_array>()},
    {S::kDeveloper, "force_thread_per_core", K::kBool, "0",
     Developer<&ConfigDeveloper::force_thread_per_core>()},
    {S::kDeveloper, "favor_low_mem_over_speed", K::kBool, "0",
     Developer<&ConfigDeveloper::favor_low_mem_over_speed>()},
};

constexpr NamedColor kNamedColors[] = {
    {"black", {0, 0, 0}},       {"silver", {192, 192, 192}}, {"gray", {128, 128, 128}},
    {"white", {255, 255, 255}}, {"maroon", {128, 0, 0}},     {"red", {255, 0, 0}},
    {"purple", {128, 0, 128}},  {"fuchsia", {255, 0, 255}},  {"green", {0, 128, 0}},
    {"lime", {0, 255, 0}},      {"olive", {128, 128, 0}},    {"yellow", {255, 255, 0}},
    {"navy", {0, 0, 128}},      {"blue", {0, 0, 255}},       {"teal", {0, 128, 128}},
    {"aqua", {0, 255, 255}},    {"orange", {255, 165, 0}},
};

}  // namespace

std::span<const KeyEntry> ConfigKeys() {
  return kKeys;
}
std::span<const NamedColor> NamedColors() {
  return kNamedColors;
}
std::span<const EnumWord> BoolWords() {
  return kBoolWords;
}

}  // namespace korvanel
