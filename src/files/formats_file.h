#pragma once

// The formats file ("Korvanel.fmt"): rules that tell width, height and format
// of a raw file from its name.
//
//   ; comment
//   <format_group>
//   file_pattern = [.*_(\d+)x(\d+)\.nv12]
//   width  = [.*_(\d+)x(\d+)\.nv12],$1
//   height = [.*_(\d+)x(\d+)\.nv12],$2
//   format = [.*],PI,YYYYUV,8
//   </format_group>

#include <cstdint>
#include <string>
#include <vector>

#include "image/format_group.h"
#include "image/format_parser.h"
#include "image/line_sink.h"

namespace korvanel {

inline constexpr uint32_t kMaxFixedDimension = 15000;

// The rules in force: the typed expression (group 0) and the file's groups.
struct FormatRules {
  DirectFormat direct;
  std::vector<FormatGroup> groups;
  std::string source_path;  // the formats file the groups came from
};

// Reads the first candidate that opens. On success the file's groups replace
// `rules.groups`; on failure they are emptied (the program runs on without
// rules) after one log line. The direct expression is left alone.
bool LoadFormatsFile(const std::vector<std::string>& candidates, FormatRules& rules,
                     ILineSink& log);

// Parses formats-file text already split into lines; the numbers in the
// messages are line indices from 0.
bool ParseFormatsLines(const std::vector<std::string>& lines, std::vector<FormatGroup>& groups,
                       ILineSink& log);

}  // namespace korvanel
