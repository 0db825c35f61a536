#include "app/command_line.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <fstream>
#include <span>

#include "image/text_util.h"

namespace korvanel {

namespace {

struct SwitchName {
  const char* name;
  Switch code;
};

constexpr SwitchName kSwitchNames[] = {
    {"-h", Switch::ShortHelp},      {"--help", Switch::FullHelp},
    {"-bt", Switch::BatchFile},     {"--batch_file", Switch::BatchFile},
    {"-ff", Switch::FormatFile},    {"--fmt_file", Switch::FormatFile},
    {"-cf", Switch::ConfigFile},    {"--cfg_file", Switch::ConfigFile},
    {"-op", Switch::Open},          {"--open", Switch::Open},
    {"-n", Switch::New},            {"--new", Switch::New},
    {"-d", Switch::Diff},           {"--diff", Switch::Diff},
    {"-cmp", Switch::Compare},      {"--compare", Switch::Compare},
    {"-flt", Switch::Filter},       {"--filter", Switch::Filter},
    {"-e", Switch::IEval},          {"--ieval", Switch::IEval},
    {"-roi", Switch::Roi},          {"--reg_of_interest", Switch::Roi},
    {"-s", Switch::Save},           {"--save", Switch::Save},
    {"-sst", Switch::SaveStatistics}, {"--save_stat", Switch::SaveStatistics},
    {"-spng", Switch::SavePng},     {"--save_png", Switch::SavePng},
    {"-cnv", Switch::Convert},      {"--convert", Switch::Convert},
    {"-cls", Switch::Close},        {"--close", Switch::Close},
    {"-q", Switch::Quit},           {"--exit", Switch::Quit},
    {"--quit", Switch::Quit},
};

constexpr const char* kExpectsPath = "expects a path as next argument";
constexpr const char* kFormatExample = "e.g. P,Y,8   ; I,RGB,16   ; PI,YYYYUV,8";
constexpr const char* kMatrixExample = "e.g. [0.3,0.2,0.5,0],[1.3,-0.2,0.7,-128],[0.1,-0.7,-0.2,-128]";
constexpr uint32_t kMaxHkReference = 20;
constexpr uint32_t kMaxHkList = 8;

bool IsOneOf(std::string_view word, std::initializer_list<std::string_view> names) {
  return std::find(names.begin(), names.end(), word) != names.end();
}

bool IsDimensionsOption(std::string_view a) { return IsOneOf(a, {"-dims", "-wh"}); }
bool IsFormatOption(std::string_view a) { return IsOneOf(a, {"-fmt", "-format_str", "-expr_str"}); }

// A whole unsigned decimal number, nothing before or after.
template <typename T>
bool ParseWhole(std::string_view text, T& value) {
  if (text.empty() || text[0] == '+' || text[0] == '-') return false;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size();
}

// hk-list ::= ref { (" " | ",") ref }, each ref a non-zero signed decimal of
// magnitude 1..20, no ref twice.
std::optional<std::vector<int32_t>> ParseHkList(std::string_view text, size_t max_count) {
  std::vector<int32_t> refs;
  for (const std::string& piece : SplitTokens(text, " ,")) {
    std::string_view digits = piece;
    const bool negative = !digits.empty() && digits[0] == '-';
    if (negative) digits.remove_prefix(1);
    uint32_t magnitude = 0;
    if (!ParseWhole(digits, magnitude) || magnitude == 0 || magnitude > kMaxHkReference) {
      return std::nullopt;
    }
    const int32_t ref = negative ? -static_cast<int32_t>(magnitude) : static_cast<int32_t>(magnitude);
    if (std::find(refs.begin(), refs.end(), ref) != refs.end()) return std::nullopt;
    refs.push_back(ref);
  }
  if (refs.empty() || refs.size() > max_count) return std::nullopt;
  return refs;
}

// Whether an argument is meant as image references rather than a word.
bool LooksLikeHkList(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789-, ") == std::string_view::npos &&
         text.find_first_of("0123456789") != std::string_view::npos;
}

// "%u,%u..%u,%u" or "%u,%u,%ux%u"; false when the text is neither.
bool ParseRectangle(std::string_view text, bool& empty, Rect& rect) {
  empty = false;
  const size_t dots = text.find("..");
  if (dots != std::string_view::npos) {
    const std::vector<std::string> lo = SplitTokens(text.substr(0, dots), ",");
    const std::vector<std::string> hi = SplitTokens(text.substr(dots + 2), ",");
    if (lo.size() != 2 || hi.size() != 2 || std::count(text.begin(), text.end(), ',') != 2 ||
        !ParseWhole(std::string_view(lo[0]), rect.min_x) || !ParseWhole(std::string_view(lo[1]), rect.min_y) ||
        !ParseWhole(std::string_view(hi[0]), rect.max_x) || !ParseWhole(std::string_view(hi[1]), rect.max_y)) {
      return false;
    }
    empty = rect.max_x < rect.min_x || rect.max_y < rect.min_y;
    return true;
  }
  const std::vector<std::string> parts = SplitTokens(text, ",");
  const size_t x = parts.size() == 3 ? parts[2].find('x') : std::string::npos;
  uint32_t w = 0, h = 0;
  if (std::count(text.begin(), text.end(), ',') != 2 || x == std::string::npos ||
      !ParseWhole(std::string_view(parts[0]), rect.min_x) || !ParseWhole(std::string_view(parts[1]), rect.min_y) ||
      !ParseWhole(std::string_view(parts[2]).substr(0, x), w) ||
      !ParseWhole(std::string_view(parts[2]).substr(x + 1), h)) {
    return false;
  }
  empty = w == 0 || h == 0 || uint64_t{rect.min_x} + w - 1 > 0xFFFFFFFFu ||
          uint64_t{rect.min_y} + h - 1 > 0xFFFFFFFFu;
  if (!empty) {
    rect.max_x = rect.min_x + (w - 1);
    rect.max_y = rect.min_y + (h - 1);
  }
  return true;
}

// "[%lf,%lf,%lf,%lf], [%lf,%lf,%lf,%lf], [%lf,%lf,%lf,%lf]" with whole offsets.
bool ParseTransform(const std::string& text, ColorTransform& t) {
  double v[12];
  int consumed = 0;
  const int n = std::sscanf(text.c_str(),
                            " [%lf ,%lf ,%lf ,%lf ] , [%lf ,%lf ,%lf ,%lf ] , [%lf ,%lf ,%lf ,%lf ] %n",
                            &v[0], &v[1], &v[2], &v[3], &v[4], &v[5], &v[6], &v[7], &v[8], &v[9],
                            &v[10], &v[11], &consumed);
  if (n != 12 || static_cast<size_t>(consumed) != text.size()) return false;
  for (int r = 0; r < 3; ++r) {
    // Range first: only then is the offset safe to convert to an integer.
    const double offset = v[r * 4 + 3];
    if (!(offset >= ColorTransform::kMinOffset && offset <= ColorTransform::kMaxOffset) ||
        offset != static_cast<double>(static_cast<int>(offset))) {
      return false;
    }
    for (int c = 0; c < 3; ++c) {
      if (!IsUsableCoefficient(v[r * 4 + c])) return false;
    }
    for (int c = 0; c < 4; ++c) t.m[r][c] = v[r * 4 + c];
  }
  return true;
}

// --- sub-option tables ---------------------------------------------------------

struct WordOption {
  const char* word;
  void (*apply)(ParsedCommand&);
};

struct Problem {
  const char* message = nullptr;
  const char* example = nullptr;
};

struct ValueOption {
  const char* word;
  Problem (*apply)(ParsedCommand&, const std::string&);  // message on a bad value
  Problem missing;
};

struct Grammar {
  Switch code;
  std::span<const WordOption> words;
  std::span<const ValueOption> values;
  uint32_t max_images;     // 0: takes no image references
  const char* bad_images;  // an unknown argument or a bad reference list
};

#define KV_FLAG(word, field) \
  WordOption { word, [](ParsedCommand& c) { c.field = true; } }
#define KV_TEXT(word, field, missing)                                     \
  ValueOption {                                                           \
    word, [](ParsedCommand& c, const std::string& v) { c.field = v; return Problem{}; }, \
        Problem { missing, nullptr }                                      \
  }

constexpr WordOption kNewWords[] = {KV_FLAG("use_roi", use_roi)};

constexpr WordOption kDiffWords[] = {
    {"all_bin", [](ParsedCommand& c) { c.diff_kind = DiffKind::AllBin; }},
    {"type1", [](ParsedCommand& c) { c.diff_kind = DiffKind::AllBin; }},
    {"all_abs_delta", [](ParsedCommand& c) { c.diff_kind = DiffKind::AllAbsDelta; }},
    {"type2", [](ParsedCommand& c) { c.diff_kind = DiffKind::AllAbsDelta; }},
    {"mask_bin", [](ParsedCommand& c) { c.diff_kind = DiffKind::MaskBin; }},
    {"type3", [](ParsedCommand& c) { c.diff_kind = DiffKind::MaskBin; }},
    {"mask_abs_delta", [](ParsedCommand& c) { c.diff_kind = DiffKind::MaskAbsDelta; }},
    {"type4", [](ParsedCommand& c) { c.diff_kind = DiffKind::MaskAbsDelta; }},
};

constexpr WordOption kFilterWords[] = {KV_FLAG("all_comp_qlfy", all_components),
                                       KV_FLAG("sep_comp", separate_components)};
constexpr ValueOption kFilterValues[] = {
    KV_TEXT("filter_expr", filter_expression, "expects filter expression string after 'filter_expr'"),
    KV_TEXT("fexpr", filter_expression, "expects filter expression string after 'filter_expr'"),
    KV_TEXT("neg_expr", negation_expression, "expects color negation expression string after 'neg_expr'"),
    KV_TEXT("nexpr", negation_expression, "expects color negation expression string after 'neg_expr'"),
};

constexpr WordOption kIEvalWords[] = {
    KV_FLAG("in_roi", in_roi),
    {"out_ch_ctx_yuv", [](ParsedCommand& c) { c.channels = IEvalChannels::ContextYuv; }},
    {"out_ch_single", [](ParsedCommand& c) { c.channels = IEvalChannels::Single; }},
    {"bpp8", [](ParsedCommand& c) { c.output_bits = 8; }},
    {"bpp16", [](ParsedCommand& c) { c.output_bits = 16; }},
    {"bpp32", [](ParsedCommand& c) { c.output_bits = 32; }},
};
constexpr ValueOption kIEvalValues[] = {
    KV_TEXT("ieval_expr", ieval_expression, "expects I-Eval expression string after 'ieval_expr'"),
    KV_TEXT("oor", out_of_range, "expects out-of-range value string after 'oor'"),
    KV_TEXT("out_ovrd", output_override, "expects output override list string after 'out_ovrd'"),
};

constexpr WordOption kSaveWords[] = {
    KV_FLAG("text", text),         KV_FLAG("hex_text", hex_text),  KV_FLAG("plnr", planar),
    KV_FLAG("planner", planar),    KV_FLAG("intrlv", interleave),  KV_FLAG("interleave", interleave),
    KV_FLAG("be", big_endian),     KV_FLAG("big_end", big_endian), KV_FLAG("ovr", overwrite),
    KV_FLAG("overwrite_exist", overwrite),
};
constexpr WordOption kExportWords[] = {KV_FLAG("ovr", overwrite), KV_FLAG("overwrite_exist", overwrite)};
constexpr ValueOption kNameValue[] = {KV_TEXT("name", path, "expects file name / path after 'name'")};

Problem SetTransform(ParsedCommand& c, const std::string& v) {
  c.has_transform = ParseTransform(v, c.transform);
  if (!c.has_transform) return {"can't parse transform matrix after 'col_trans' (3x4).", kMatrixExample};
  return {};
}

Problem SetResize(ParsedCommand& c, const std::string& v) {
  const size_t parts = static_cast<size_t>(std::count(v.begin(), v.end(), ';')) + 1;
  if (parts != 2 && parts != 4) return {"resize expects 2 or 4 value tuples.", nullptr};
  c.resize = v;
  return {};
}

constexpr const char* kResizeForm =
    "expects resize values in the form: width;height;x offset;y offset (offset is optional).";
constexpr const char* kResizeExamples =
    "3 examples:  [w*2;h+100;40;40]  [300;h/2] [sqrt(w*h);max(w,h);-30;100]";

constexpr WordOption kConvertWords[] = {KV_FLAG("use_def_trans", use_default_transform),
                                        KV_FLAG("resize_tiled", resize_tiled)};
constexpr ValueOption kConvertValues[] = {
    {"fmt_expr", [](ParsedCommand& c, const std::string& v) { c.format_expression = v; return Problem{}; },
     {"image format expression is expected after fmt_expr, format_str", kFormatExample}},
    {"format_str", [](ParsedCommand& c, const std::string& v) { c.format_expression = v; return Problem{}; },
     {"image format expression is expected after fmt_expr, format_str", kFormatExample}},
    {"fmt", [](ParsedCommand& c, const std::string& v) { c.format_expression = v; return Problem{}; },
     {"image format expression is expected after fmt_expr, format_str", kFormatExample}},
    {"col_trans", &SetTransform, {"expects color transform matrix after 'col_trans' (3x4).", kMatrixExample}},
    {"resize", &SetResize, {kResizeForm, kResizeExamples}},
};

#undef KV_FLAG
#undef KV_TEXT

constexpr Grammar kGrammars[] = {
    {Switch::New, kNewWords, {}, 1, "expects an image index"},
    {Switch::Diff, kDiffWords, {}, 2, "expects 2 valid image indexes"},
    {Switch::Compare, {}, {}, kMaxHkList, "expects at least 2 images indexes to compare"},
    {Switch::Filter, kFilterWords, kFilterValues, 1, "expects an image index"},
    {Switch::IEval, kIEvalWords, kIEvalValues, 1, "expects an image index"},
    {Switch::Save, kSaveWords, kNameValue, 1, "expects an open image index"},
    {Switch::SaveStatistics, kExportWords, kNameValue, 1, "expects an open image index"},
    {Switch::SavePng, kExportWords, kNameValue, 1, "expects an open image index"},
    {Switch::Convert, kConvertWords, kConvertValues, 1, "expects an open image index"},
    {Switch::Close, {}, {}, kMaxHkList, "expects one or more open images index"},
};

const Grammar* GrammarOf(Switch code) {
  for (const Grammar& g : kGrammars) {
    if (g.code == code) return &g;
  }
  return nullptr;
}

// --- the parser ----------------------------------------------------------------

class Parser {
 public:
  Parser(const std::vector<std::string>& args, ParseResult& result) : args_(args), result_(result) {}

  // arguments ::= "-bt" path | { file [open-options] } { switch [sub-options] }
  bool Run() {
    if (!args_.empty() && LookUpSwitch(args_[0]) == Switch::BatchFile) return RunBatchFile();
    return RunSwitches();
  }

 private:
  bool RunSwitches() {
    while (i_ < args_.size() && !LookUpSwitch(args_[i_])) {
      if (!ParsePlainOpen()) return false;
    }
    while (i_ < args_.size()) {
      const std::string& argument = args_[i_];
      const std::optional<Switch> code = LookUpSwitch(argument);
      if (!code) return ParsePlainArgument(argument);
      ++i_;
      if (!ParseSwitch(*code, argument)) return false;
      if (result_.help != HelpRequest::None) return true;
    }
    return true;
  }

  bool Fail(const std::string& argument, const char* message, const char* example = nullptr) {
    result_.errors.push_back(argument.empty() ? std::string(message)
                                              : "Command line parser error: " + argument + " " + message);
    if (example != nullptr) result_.errors.emplace_back(example);
    return false;
  }
  bool Fail(const std::string& argument, const Problem& problem) {
    return Fail(argument, problem.message, problem.example);
  }

  bool AtPlain() const { return i_ < args_.size() && !LookUpSwitch(args_[i_]); }

  // "-bt path": only first; the file's arguments replace the command line.
  bool RunBatchFile() {
    const std::string switch_arg = args_[0];
    if (args_.size() < 2 || LookUpSwitch(args_[1])) return Fail(switch_arg, kExpectsPath);
    result_.batch_file = args_[1];
    std::vector<std::string> from_file;
    std::string error;
    if (!ReadBatchFile(result_.batch_file, from_file, &error)) {
      return Fail("", (error.empty() ? "can't open batch file: " + result_.batch_file : error).c_str());
    }
    // The file cannot name another batch file: a "-bt" in it, even first, is
    // the usual misplaced-switch error.
    return Parser(from_file, result_).RunSwitches();
  }

  // A plain argument after the first switch: only the opening options of a
  // preceding open can stand here.
  bool ParsePlainArgument(const std::string& argument) {
    if (IsDimensionsOption(argument)) {
      return Fail(argument, "image dimension must appear in the context of a recent opened image");
    }
    if (IsFormatOption(argument)) {
      return Fail(argument, "image format expression must appear in the context of a recent opened image");
    }
    return Fail(argument, "is not a switch; a file to open after the first switch needs -op, --open");
  }

  bool ParsePlainOpen() {
    ParsedCommand command;
    command.kind = Switch::Open;
    command.argument = args_[i_];
    command.path = args_[i_];
    if (IsDimensionsOption(command.path) || IsFormatOption(command.path)) {
      return ParsePlainArgument(command.path);
    }
    ++i_;
    return ParseOpenOptions(command);
  }

  // open-options ::= { ("-dims" | "-wh") WxH | ("-fmt" | "-format_str" | "-expr_str") expr }
  bool ParseOpenOptions(ParsedCommand& command) {
    while (AtPlain()) {
      const std::string& option = args_[i_];
      if (IsDimensionsOption(option)) {
        ++i_;
        uint32_t w = 0, h = 0;
        const size_t x = AtPlain() ? args_[i_].find('x') : std::string::npos;
        if (x == std::string::npos || !ParseWhole(std::string_view(args_[i_]).substr(0, x), w) ||
            !ParseWhole(std::string_view(args_[i_]).substr(x + 1), h)) {
          return Fail(option, "expects a width x height (e.g. 50x100) as next argument after -dims, -wh");
        }
        if (w == 0 || h == 0) return Fail(option, "image width, height must have some positive (>0) value");
        command.width = w;
        command.height = h;
        command.has_dimensions = true;
        ++i_;
      } else if (IsFormatOption(option)) {
        ++i_;
        if (!AtPlain()) {
          return Fail(option, "image format expression is expected after -fmt_expr, -format_str", kFormatExample);
        }
        command.format_expression = args_[i_++];
      } else {
        break;
      }
    }
    result_.commands.push_back(std::move(command));
    return true;
  }

  bool ParseSwitch(Switch code, const std::string& argument) {
    switch (code) {
      case Switch::ShortHelp: result_.help = HelpRequest::Short; return true;
      case Switch::FullHelp: result_.help = HelpRequest::Full; return true;
      case Switch::Quit: result_.quit = true; return true;
      case Switch::BatchFile:
        return Fail(argument, "batch file to parse must appear as first argument only");
      case Switch::Open:
      case Switch::FormatFile:
      case Switch::ConfigFile: return ParsePathSwitch(code, argument);
      case Switch::Roi: return ParseRoi(argument);
      default: return ParseWithGrammar(*GrammarOf(code), argument);
    }
  }

  bool ParsePathSwitch(Switch code, const std::string& argument) {
    if (!AtPlain()) return Fail(argument, kExpectsPath);
    ParsedCommand command;
    command.kind = code;
    command.argument = argument;
    command.path = args_[i_++];
    if (code == Switch::Open) return ParseOpenOptions(command);
    result_.commands.push_back(std::move(command));
    return true;
  }

  // sub-options ::= { word | value-word value | hk-list }
  bool ParseWithGrammar(const Grammar& grammar, const std::string& argument) {
    ParsedCommand command;
    command.kind = grammar.code;
    command.argument = argument;
    bool have_images = false;
    while (AtPlain()) {
      const std::string& option = args_[i_++];
      if (const WordOption* word = FindWord(grammar, option)) {
        word->apply(command);
        continue;
      }
      if (const ValueOption* value = FindValue(grammar, option)) {
        if (!AtPlain()) return Fail(argument, value->missing);
        const Problem problem = value->apply(command, args_[i_++]);
        if (problem.message != nullptr) return Fail(argument, problem);
        continue;
      }
      if (grammar.code == Switch::Close && option == "all") {
        command.close_all = true;
        continue;
      }
      if (IsDimensionsOption(option) || IsFormatOption(option)) return ParsePlainArgument(option);
      std::optional<std::vector<int32_t>> refs;
      if (grammar.max_images > 0 && !have_images) refs = ParseHkList(option, grammar.max_images);
      if (!refs) return Fail(argument, grammar.bad_images);
      command.images = std::move(*refs);
      have_images = true;
    }
    if (grammar.code == Switch::Diff && have_images && command.images.size() != 2) {
      return Fail(argument, grammar.bad_images);
    }
    if (grammar.code == Switch::Compare && command.images.size() == 1) {
      return Fail(argument, grammar.bad_images);
    }
    if (grammar.code == Switch::Close && !have_images && !command.close_all) {
      return Fail(argument, grammar.bad_images);
    }
    if (grammar.code == Switch::Convert && command.format_expression.empty()) {
      return Fail(argument, "image format expression is expected in command");
    }
    result_.commands.push_back(std::move(command));
    return true;
  }

  // roi ::= [ hk-ref ] rectangle
  bool ParseRoi(const std::string& argument) {
    constexpr const char* kForms = "min_x,min_y..max_x,max_y or min_x,min_y,width x height.";
    const std::string expects = std::string("expects rectangular area: ") + kForms;
    const std::string cant_parse = std::string("can't parse rectangular area: ") + kForms;
    if (!AtPlain()) return Fail(argument, expects.c_str(), "e.g. 10,32..110,240   ;   1,59,30x40");
    ParsedCommand command;
    command.kind = Switch::Roi;
    command.argument = argument;
    bool have_rect = false;
    while (AtPlain()) {
      const std::string& option = args_[i_++];
      if (LooksLikeHkList(option) && option.find(',') == std::string::npos && command.images.empty()) {
        std::optional<std::vector<int32_t>> refs = ParseHkList(option, 1);
        if (!refs) return Fail(argument, "expects an open image index");
        command.images = std::move(*refs);
        continue;
      }
      bool empty = false;
      if (have_rect || !ParseRectangle(option, empty, command.roi)) {
        return Fail(argument, cant_parse.c_str(), "e.g. 10,32,110..240   ;   1,59,30x40");
      }
      if (empty) return Fail(argument, "illegal rectangular area (must be positive > 0)");
      have_rect = true;
    }
    if (!have_rect) return Fail(argument, "can't find rectangular area");
    result_.commands.push_back(std::move(command));
    return true;
  }

  static const WordOption* FindWord(const Grammar& g, std::string_view option) {
    for (const WordOption& w : g.words) {
      if (option == w.word) return &w;
    }
    return nullptr;
  }
  static const ValueOption* FindValue(const Grammar& g, std::string_view option) {
    for (const ValueOption& v : g.values) {
      if (option == v.word) return &v;
    }
    return nullptr;
  }

  const std::vector<std::string>& args_;
  ParseResult& result_;
  size_t i_ = 0;
};

}  // namespace

std::optional<Switch> LookUpSwitch(std::string_view argument) {
  for (const SwitchName& s : kSwitchNames) {
    if (argument == s.name) return s.code;
  }
  return std::nullopt;
}

std::vector<std::string> TokenizeCommandLine(std::string_view text) {
  constexpr char kMarker = '\x01';
  std::string marked(text);
  bool quoted = false;
  for (char& c : marked) {
    if (c == '"') quoted = !quoted;
    else if (quoted && c == ' ') c = kMarker;
  }
  std::vector<std::string> arguments = SplitTokens(marked, " \t\r\n");
  for (std::string& a : arguments) {
    std::replace(a.begin(), a.end(), kMarker, ' ');
    std::erase(a, '"');
  }
  std::erase_if(arguments, [](const std::string& a) { return a.empty(); });
  return arguments;
}

bool ReadBatchFile(const std::string& path, std::vector<std::string>& arguments, std::string* error) {
  std::ifstream file(path);
  if (!file) return false;
  std::string line;
  for (uint32_t number = 1; std::getline(file, line); ++number) {
    if (line.size() > kMaxBatchLineLength) {
      if (error != nullptr) {
        *error = StrFormat("batch file line %u is longer than %zu characters", number, kMaxBatchLineLength);
      }
      return false;
    }
    if (line.empty() || line[0] == '#') continue;
    for (std::string& a : TokenizeCommandLine(line)) arguments.push_back(std::move(a));
    if (arguments.size() > kMaxBatchArguments) {
      if (error != nullptr) *error = StrFormat("batch file holds more than %zu arguments", kMaxBatchArguments);
      return false;
    }
  }
  return true;
}

ParseResult ParseArguments(const std::vector<std::string>& arguments) {
  ParseResult result;
  Parser(arguments, result).Run();
  if (!result.errors.empty()) result.commands.clear();
  return result;
}

}  // namespace korvanel
