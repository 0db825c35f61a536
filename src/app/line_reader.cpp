#include "app/line_reader.h"

#include <cstdio>
#include <optional>

#include "app/crc32.h"
#include "app/owned_file.h"
#include "image/text_util.h"

namespace korvanel {
namespace {

bool IsCountedLine(std::string_view line) {
  const std::string_view text = TrimAscii(line);
  if (text.empty() || text.front() == ';') return false;
  return text.front() == '[' || text.find('=') != std::string_view::npos;
}

// "1A2B3C4D" (1 to 8 hexadecimal digits) as a number.
std::optional<uint32_t> ParseHex32(std::string_view text) {
  if (text.empty() || text.size() > 8) return std::nullopt;
  uint32_t value = 0;
  for (const char c : text) {
    uint32_t digit = 0;
    if (c >= '0' && c <= '9') {
      digit = static_cast<uint32_t>(c - '0');
    } else if (c >= 'a' && c <= 'f') {
      digit = static_cast<uint32_t>(c - 'a' + 10);
    } else if (c >= 'A' && c <= 'F') {
      digit = static_cast<uint32_t>(c - 'A' + 10);
    } else {
      return std::nullopt;
    }
    value = value << 4 | digit;
  }
  return value;
}

LineReadStatus CheckAndStripChecksum(std::vector<std::string>& lines) {
  while (!lines.empty() && TrimAscii(lines.back()).empty()) lines.pop_back();
  if (lines.empty()) return LineReadStatus::kChecksumMissing;
  std::string_view last = TrimAscii(lines.back());
  const bool check_off = last.front() == ';';
  if (check_off) last.remove_prefix(1);
  const std::optional<uint32_t> stored = ParseHex32(TrimAscii(last));
  if (!stored) return LineReadStatus::kChecksumMissing;
  lines.pop_back();
  if (check_off) return LineReadStatus::kOk;
  return SectionAndKeyLinesCrc(lines) == *stored ? LineReadStatus::kOk
                                                 : LineReadStatus::kChecksumMismatch;
}

}  // namespace

uint32_t SectionAndKeyLinesCrc(const std::vector<std::string>& lines) {
  uint32_t crc = 0;
  for (const std::string& line : lines) {
    if (!IsCountedLine(line)) continue;
    crc = Crc32(line, crc);
    crc = Crc32("\n", crc);
  }
  return crc;
}

LineReadResult ReadTextLines(const std::filesystem::path& path, const LineReadOptions& options) {
  LineReadResult result;
  const OwnedFile file(std::fopen(path.c_str(), "rb"));
  if (!file) return result;

  std::string line;
  bool cut = false;
  bool line_started = false;
  const auto end_line = [&] {
    result.lines.push_back(std::move(line));
    line.clear();
    if (cut) result.cut_lines.push_back(static_cast<uint32_t>(result.lines.size()));
    cut = false;
    line_started = false;
  };
  char buffer[16 * 1024];
  size_t got = 0;
  while ((got = std::fread(buffer, 1, sizeof buffer, file.get())) > 0) {
    for (size_t i = 0; i < got; ++i) {
      const char c = buffer[i];
      if (c == '\n') {
        end_line();
        continue;
      }
      line_started = true;
      if (c == '\r') continue;
      if (line.size() < options.max_line_length) {
        line.push_back(c);
      } else {
        cut = true;
      }
    }
  }
  if (line_started) end_line();
  result.status = options.checked ? CheckAndStripChecksum(result.lines) : LineReadStatus::kOk;
  return result;
}

}  // namespace korvanel
