#include "files/formats_file.h"

#include <fstream>
#include <optional>
#include <string_view>

#include "image/text_util.h"

namespace korvanel {

namespace {

bool Skipped(std::string_view line) { return TrimAscii(line).empty() || line[0] == ';'; }

bool StartsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

// The text between the first '[' and the last ']'; "[]" means every name.
std::optional<std::string> BracketedRegex(std::string_view line) {
  const size_t open = line.find('[');
  const size_t close = line.rfind(']');
  if (open == std::string_view::npos || close == std::string_view::npos || close < open) {
    return std::nullopt;
  }
  std::string regex(line.substr(open + 1, close - open - 1));
  return regex.empty() ? ".*" : regex;
}

struct Dimension {
  const char* name;
  std::string FormatGroup::*regex;
  int32_t FormatGroup::*group;
  uint32_t FormatGroup::*value;
  uint32_t FormatGroup::*line;
};

constexpr Dimension kWidth{"width", &FormatGroup::width_regex, &FormatGroup::width_group,
                           &FormatGroup::width_value, &FormatGroup::width_line};
constexpr Dimension kHeight{"height", &FormatGroup::height_regex, &FormatGroup::height_group,
                            &FormatGroup::height_value, &FormatGroup::height_line};

// dimension ::= key "=" ( "[" regex "]" [ ... "$" digit ] | number )
bool ParseDimension(const Dimension& d, std::string_view line, uint32_t index, FormatGroup& group,
                    ILineSink& log) {
  group.*(d.line) = index;
  if (line.find('[') != std::string_view::npos) {
    const std::optional<std::string> regex = BracketedRegex(line);
    if (!regex) {
      log.AddLine(StrFormat("Parse error [#%u]: Can't parse regex in %s", index,
                            std::string(line).c_str()));
      return false;
    }
    group.*(d.regex) = *regex;
    // Only the one character behind the last '$' counts: "$12" is group 1.
    const size_t dollar = line.rfind('$');
    int32_t number = 1;
    if (dollar != std::string_view::npos && dollar + 1 < line.size() && line[dollar + 1] >= '1' &&
        line[dollar + 1] <= '9') {
      number = line[dollar + 1] - '0';
    }
    group.*(d.group) = number;
    return true;
  }
  const size_t equals = line.find('=');
  const int32_t value = equals == std::string_view::npos ? 0 : ParseLeadingInt32(line.substr(equals + 1));
  if (value < 1 || value > static_cast<int32_t>(kMaxFixedDimension)) {
    log.AddLine(StrFormat("Parse error [#%u]: '%s' must be in range(%u..%u)", index, d.name, 1u,
                          kMaxFixedDimension));
    return false;
  }
  group.*(d.value) = static_cast<uint32_t>(value);
  return true;
}

struct GroupState {
  FormatGroup group;
  bool pattern = false, width = false, height = false;
};

// Already-parsed keys may not repeat; `format` may.
bool CheckOnce(bool& seen, const char* key, uint32_t index, ILineSink& log) {
  if (seen) {
    log.AddLine(StrFormat("Parse error [#%u]: Already parsed %s", index, key));
    return false;
  }
  seen = true;
  return true;
}

// group ::= { key-line } "</format_group>"; `next` is the line after the
// opening tag and ends on the closing one.
bool ParseGroup(const std::vector<std::string>& lines, size_t& next, FormatGroup& out,
                ILineSink& log) {
  const size_t opening = next - 1;
  GroupState state;
  for (; next < lines.size(); ++next) {
    const std::string_view line = lines[next];
    const auto index = static_cast<uint32_t>(next);
    if (Skipped(line)) continue;
    const std::string_view key = TrimAscii(line);
    if (key == "</format_group>") {
      if (!state.pattern || !state.width || !state.height || state.group.formats.empty()) {
        log.AddLine(StrFormat("Parse error [#%u]: Must encounter all fields before ending a format group %s",
                              index, std::string(line).c_str()));
        return false;
      }
      out = std::move(state.group);
      return true;
    }
    bool ok = true;
    if (StartsWith(key, "file_pattern")) {
      ok = CheckOnce(state.pattern, "file_pattern", index, log);
      if (ok) {
        const std::optional<std::string> regex = BracketedRegex(line);
        if (!regex) {
          log.AddLine(StrFormat("Parse error [#%u]: Can't parse regex in %s", index,
                                std::string(line).c_str()));
          return false;
        }
        state.group.file_pattern = *regex;
        state.group.file_pattern_line = index;
      }
    } else if (StartsWith(key, "width")) {
      ok = CheckOnce(state.width, "width", index, log) && ParseDimension(kWidth, line, index, state.group, log);
    } else if (StartsWith(key, "height")) {
      ok = CheckOnce(state.height, "height", index, log) &&
           ParseDimension(kHeight, line, index, state.group, log);
    } else if (StartsWith(key, "format")) {
      ok = ParseFormatLine(line, index, state.group, log);
    }
    if (!ok) return false;
  }
  // Point at the opening tag: that is the group the user has to look at.
  log.AddLine(StrFormat("Parse error [#%u]: Format group isn't closed before the end of the file",
                        static_cast<uint32_t>(opening)));
  return false;
}

std::optional<std::vector<std::string>> ReadLines(const std::string& path) {
  std::ifstream file(path);
  if (!file) return std::nullopt;
  std::vector<std::string> lines;
  std::string line;
  while (std::getline(file, line)) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace

bool ParseFormatsLines(const std::vector<std::string>& lines, std::vector<FormatGroup>& groups,
                       ILineSink& log) {
  std::vector<FormatGroup> parsed;
  for (size_t i = 0; i < lines.size(); ++i) {
    if (Skipped(lines[i]) || !StartsWith(lines[i], "<format_group>")) continue;
    ++i;
    FormatGroup group;
    if (!ParseGroup(lines, i, group, log)) return false;
    parsed.push_back(std::move(group));
  }
  groups = std::move(parsed);
  return true;
}

bool LoadFormatsFile(const std::vector<std::string>& candidates, FormatRules& rules,
                     ILineSink& log) {
  log.BeginEntry("LoadFormatsFile");
  rules.groups.clear();
  rules.source_path.clear();
  std::optional<std::vector<std::string>> lines;
  std::string path;
  for (const std::string& candidate : candidates) {
    path = candidate;
    lines = ReadLines(candidate);
    if (lines) break;
  }
  if (!lines) {
    log.AddLine(StrFormat("Can't open formats file: %s", path.c_str()));
    return false;
  }
  log.AddLine(StrFormat("Trying to load formats from %s", path.c_str()));
  if (!ParseFormatsLines(*lines, rules.groups, log)) return false;
  rules.source_path = path;
  log.AddLine(StrFormat("%u format groups were loaded from %s (%d lines)",
                        static_cast<uint32_t>(rules.groups.size()), path.c_str(),
                        static_cast<int>(lines->size())));
  return true;
}

}  // namespace korvanel
