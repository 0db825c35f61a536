#pragma once

// The command line and batch file: tokenizing, the switch table, and the
// parse into an ordered list of commands. The executor (batch_executor.h)
// runs the list against the application state.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "image/color_transform.h"
#include "image/region.h"

namespace korvanel {

enum class Switch : uint32_t {
  ShortHelp = 0,
  FullHelp = 1,
  BatchFile = 2,
  FormatFile = 3,
  ConfigFile = 4,
  Open = 5,
  New = 6,
  Diff = 7,
  Compare = 8,
  Filter = 9,
  IEval = 10,
  Roi = 11,
  Save = 12,
  SaveStatistics = 13,
  SavePng = 14,
  Convert = 15,
  Close = 16,
  Quit = 17,
};

// The switch an argument names, compared whole and case-sensitively.
std::optional<Switch> LookUpSwitch(std::string_view argument);

enum class DiffKind : uint32_t { AllBin = 0, AllAbsDelta = 1, MaskBin = 2, MaskAbsDelta = 3 };
enum class IEvalChannels : uint32_t { ByContext = 0, ContextYuv = 1, Single = 2 };

// One command with every parameter any switch can carry; each switch uses
// the fields its sub-options name.
struct ParsedCommand {
  Switch kind = Switch::Open;
  std::string argument;         // the switch as written, or the file path of a plain open
  std::vector<int32_t> images;  // HK references as written; empty = the default image(s)

  // open, -ff, -cf, and "name" of -s/-sst/-spng
  std::string path;
  std::string format_expression;  // open -fmt, -cnv fmt_expr
  uint32_t width = 0, height = 0;  // open -dims
  bool has_dimensions = false;

  bool use_roi = false;                   // -n
  DiffKind diff_kind = DiffKind::AllBin;  // -d
  bool all_components = false;            // -flt all_comp_qlfy
  bool separate_components = false;       // -flt sep_comp
  std::string filter_expression, negation_expression;

  std::string ieval_expression, out_of_range, output_override;  // -e
  bool in_roi = false;
  IEvalChannels channels = IEvalChannels::ByContext;
  uint32_t output_bits = 0;  // 0: by context

  Rect roi;  // -roi

  bool text = false, hex_text = false, planar = false, interleave = false, big_endian = false;
  bool overwrite = false;  // -s, -sst, -spng

  bool use_default_transform = false;  // -cnv
  bool has_transform = false;
  ColorTransform transform;
  std::string resize;  // "width;height[;x offset;y offset]"
  bool resize_tiled = false;

  bool close_all = false;  // -cls
};

enum class HelpRequest { None, Short, Full };

struct ParseResult {
  std::vector<ParsedCommand> commands;
  HelpRequest help = HelpRequest::None;
  std::string batch_file;
  bool quit = false;
  std::vector<std::string> errors;  // lines to print; parsing stopped at the first error
};

// Splits one line: double quotes group blanks into an argument and vanish.
std::vector<std::string> TokenizeCommandLine(std::string_view text);

// Batch files are read within these bounds; beyond them the parse fails.
inline constexpr size_t kMaxBatchLineLength = 65536;
inline constexpr size_t kMaxBatchArguments = 100000;

// Appends the arguments of every line that is not empty and not a "#"
// comment. False when the file cannot be opened, or (with `error` set) when
// a line or the argument count passes its bound.
bool ReadBatchFile(const std::string& path, std::vector<std::string>& arguments, std::string* error = nullptr);

ParseResult ParseArguments(const std::vector<std::string>& arguments);

}  // namespace korvanel
