#include "app/config_reader.h"

#include <string_view>

#include "app/config_keys.h"
#include "app/config_value_parse.h"
#include "image/text_util.h"

namespace korvanel {
namespace {

struct KeyLine {
  std::string key;  // lower case
  std::string_view value;
};

struct SectionBlock {
  std::string name;  // lower case
  std::vector<KeyLine> keys;
};

std::vector<SectionBlock> SplitSections(const std::vector<std::string>& lines) {
  std::vector<SectionBlock> blocks;
  for (const std::string& line : lines) {
    const std::string_view text = TrimAscii(line);
    if (text.empty() || text.front() == ';') continue;
    if (text.front() == '[') {
      // A "[" line without "]" still ends the section before it but names none.
      const size_t close = text.find(']');
      const std::string_view name =
          close == std::string_view::npos ? std::string_view() : text.substr(1, close - 1);
      blocks.push_back({ToLowerAscii(TrimAscii(name)), {}});
      continue;
    }
    const size_t equals = text.find('=');
    // Key lines before the first section belong to none and are ignored.
    if (equals == std::string_view::npos || blocks.empty()) continue;
    blocks.back().keys.push_back(
        {ToLowerAscii(TrimAscii(text.substr(0, equals))), TrimAscii(text.substr(equals + 1))});
  }
  return blocks;
}

}  // namespace

std::vector<std::string> ResetConfigValues(ConfigValues& values,
                                           const std::filesystem::path& program_dir) {
  std::vector<std::string> report;
  for (const KeyEntry& entry : ConfigKeys()) {
    ConfigValue value = entry.field.load(values);
    if (entry.kind == ValueKind::kDirectory && *entry.default_text == '\0') {
      value = program_dir.string();
    } else if (*entry.default_text == '\0') {
      std::visit([](auto& held) { held = {}; }, value);
    } else if (!ParseConfigValue(entry, entry.default_text, value, report)) {
      continue;
    }
    if (!entry.field.store(values, value)) {
      report.push_back(StrFormat("[%s]::%s: Kind does not match its field",
                                 kConfigSectionNames[static_cast<uint32_t>(entry.section)],
                                 entry.key));
    }
  }
  return report;
}

void ApplyConfigLines(const std::vector<std::string>& lines, ConfigValues& values,
                      std::vector<std::string>& report) {
  const std::vector<SectionBlock> blocks = SplitSections(lines);
  for (uint32_t section = 0; section < kConfigSectionCount; ++section) {
    for (const SectionBlock& block : blocks) {
      if (block.name != kConfigSectionNames[section]) continue;
      for (const KeyEntry& entry : ConfigKeys()) {
        if (static_cast<uint32_t>(entry.section) != section) continue;
        for (const KeyLine& line : block.keys) {
          if (line.key != entry.key) continue;
          ConfigValue value = entry.field.load(values);
          if (ParseConfigValue(entry, line.value, value, report)) entry.field.store(values, value);
        }
      }
    }
  }
}

}  // namespace korvanel
