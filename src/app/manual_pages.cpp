#include "app/manual_pages.h"

#include <QFile>

#include "app/app_version.h"
#include "image/text_util.h"

// The manual lives in a Qt resource of the static core library; its
// initialiser has to be referenced explicitly to be linked in.
static void InitManualResource() { Q_INIT_RESOURCE(korvanel_resources); }

namespace korvanel {

namespace {

constexpr const char* kManualOrder[] = {
    "MANUAL_MENU",     "BASIC_USAGE",     "HOT_KEYS_1_PAGE", "HOT_KEYS_2_PAGE", "HOT_KEYS_3_PAGE",
    "HOT_KEYS_4_PAGE", "HOT_KEYS_5_PAGE", "MOUSE_PAGE",      "HISTOGRAM_PAGE",  "FILTER_COLORS",
    "CONVERT_IMAGE",   "IMAGE_EVALUATOR", "FORMATS_FILE",    "CONFIG_FILE",     "COMMAND_LINE",
    "DEVELOPER_NOTES",
};

// A tag line: "<<TAG>>" or "<</TAG>>", blanks allowed after the last '>'.
bool TagLine(std::string_view line, bool& closing, std::string& tag) {
  const std::string_view trimmed = TrimAscii(line);
  if (trimmed.size() < 4 || trimmed.substr(0, 2) != "<<" || trimmed.back() != '>') return false;
  closing = trimmed.substr(0, 3) == "<</";
  std::string_view inner = trimmed.substr(closing ? 3 : 2);
  while (!inner.empty() && inner.back() == '>') inner.remove_suffix(1);
  tag = std::string(inner);
  return !tag.empty();
}

}  // namespace

CManualPages::CManualPages(std::string_view text) {
  size_t start = 0;
  while (start <= text.size()) {
    const size_t end = text.find('\n', start);
    std::string line(text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines_.push_back(std::move(line));
    if (end == std::string_view::npos) break;
    start = end + 1;
  }
  std::string open_tag;
  size_t open_first = 0;
  for (size_t i = 0; i < lines_.size(); ++i) {
    bool closing = false;
    std::string tag;
    if (!TagLine(lines_[i], closing, tag)) continue;
    if (closing) {
      if (!open_tag.empty()) pages_[open_tag] = {open_first, i - open_first};
      open_tag.clear();
    } else {
      open_tag = tag;
      open_first = i + 1;
    }
  }
}

std::string CManualPages::Page(const std::string& tag) const {
  const auto found = pages_.find(tag);
  if (found == pages_.end()) return {};
  std::string text;
  for (size_t i = 0; i < found->second.line_count; ++i) {
    text += lines_[found->second.first_line + i];
    text += '\n';
  }
  return text;
}

std::string CManualPages::Manual() const {
  std::string text;
  for (const char* tag : kManualOrder) text += Page(tag);
  return text;
}

const std::vector<std::string>& CManualPages::OverlayTags() {
  static const std::vector<std::string> tags = {
      "OSD_MENU_PAGE",   "BASIC_USAGE",     "HOT_KEYS_1_PAGE", "HOT_KEYS_2_PAGE",
      "HOT_KEYS_3_PAGE", "HOT_KEYS_4_PAGE", "HOT_KEYS_5_PAGE", "MOUSE_PAGE",
      "HISTOGRAM_PAGE",  "FORMATS_BRIEF_PAGE", "CONFIG_FILE_COMMAND_LINE_BRIEF_PAGE"};
  return tags;
}

std::string_view ManualText() {
  static const std::string text = [] {
    InitManualResource();
    QFile file(":/korvanel/manual.txt");
    if (!file.open(QIODevice::ReadOnly)) return std::string();
    return file.readAll().toStdString();
  }();
  return text;
}

const CManualPages& Manual() {
  static const CManualPages pages(ManualText());
  return pages;
}

std::string ShortUsageText() {
  return StrFormat(
      "%s %s - viewer, comparer and batch processor for raw images\n"
      "\n"
      "usage: korvanel [file [-dims WxH] [-fmt EXPR]]... [switch [sub-options]]...\n"
      "       korvanel -bt BATCH_FILE\n"
      "\n"
      "  -h                        this layout        --help     the full manual\n"
      "  -bt,  --batch_file PATH   read the arguments from a file (first argument only)\n"
      "  -ff,  --fmt_file PATH     use another formats file\n"
      "  -cf,  --cfg_file PATH     use another configuration file\n"
      "  -op,  --open PATH         open an image  [-dims WxH] [-fmt EXPR]\n"
      "  -n,   --new               duplicate or crop  [use_roi] [HK]\n"
      "  -d,   --diff              diff two images  [all_bin|all_abs_delta|mask_bin|mask_abs_delta] [HK,HK]\n"
      "  -cmp, --compare           compare images  [HK,HK,...]\n"
      "  -flt, --filter            filter colours  [HK] [all_comp_qlfy] [sep_comp] [fexpr E] [nexpr E]\n"
      "  -e,   --ieval             I-Eval  [HK] ieval_expr E [oor V] [out_ovrd L] [in_roi]\n"
      "                            [out_ch_ctx_yuv|out_ch_single] [bpp8|bpp16|bpp32]\n"
      "  -roi, --reg_of_interest   set a ROI  [HK] x0,y0..x1,y1 | x0,y0,WxH\n"
      "  -s,   --save              save  [HK] [text|hex_text] [plnr|intrlv] [be] [ovr] [name PATH]\n"
      "  -sst, --save_stat         save statistics  [HK] [ovr] [name PATH]\n"
      "  -spng,--save_png          export PNG  [HK] [ovr] [name PATH]\n"
      "  -cnv, --convert           convert  [HK] fmt EXPR [use_def_trans] [col_trans M]\n"
      "                            [resize W;H[;X;Y]] [resize_tiled]\n"
      "  -cls, --close             close images  all | HK,HK,...\n"
      "  -q,   --quit, --exit      run without a window and end\n"
      "\n"
      "HK: an image's number 1..20, or -1..-20 counting back from the most recent.\n",
      kAppName, kAppVersion);
}

}  // namespace korvanel
