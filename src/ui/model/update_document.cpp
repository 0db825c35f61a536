#include "ui/model/update_document.h"

#include <algorithm>
#include <cstdio>

namespace korvanel {
namespace {

constexpr std::string_view kOpenLine = "<version>";
constexpr std::string_view kCloseLine = "</version>";
constexpr std::string_view kEndLine = "<version_end>";

// Splits on LF and drops one CR before it, so CR LF and bare LF both work.
std::vector<std::string_view> SplitLines(std::string_view text) {
  std::vector<std::string_view> lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    lines.push_back(line);
    if (end == std::string_view::npos) break;
    text.remove_prefix(end + 1);
  }
  return lines;
}

// "%d.%d" as the C library reads it: leading blanks and signs are fine,
// text after the second number is ignored.
std::optional<VersionNumber> ReadVersion(std::string_view line) {
  const std::string text(line);
  VersionNumber version;
  if (std::sscanf(text.c_str(), "%d.%d", &version.major, &version.minor) != 2) return std::nullopt;
  return version;
}

}  // namespace

std::optional<std::vector<VersionRecord>> ParseUpdateDocument(std::string_view text) {
  const std::vector<std::string_view> lines = SplitLines(text);
  std::vector<VersionRecord> records;
  bool in_record = false;
  for (size_t i = 0; i < lines.size(); ++i) {
    const std::string_view line = lines[i];
    // The end line ends the document even inside a record; what that record
    // held so far stays.
    if (line == kEndLine) return records;
    if (in_record) {
      if (line == kCloseLine) {
        in_record = false;
      } else {
        records.back().log.append(line).push_back('\n');
      }
      continue;
    }
    if (line != kOpenLine) continue;
    if (i + 1 >= lines.size()) return std::nullopt;
    const std::optional<VersionNumber> version = ReadVersion(lines[++i]);
    if (!version) return std::nullopt;
    records.push_back({*version, {}});
    in_record = true;
  }
  return std::nullopt;  // no end line
}

std::string VersionText(VersionNumber version) {
  char text[32];
  std::snprintf(text, sizeof text, "%d.%d", version.major, version.minor);
  return text;
}

UpdateDecision DecideUpdate(const std::vector<VersionRecord>& records, VersionNumber own) {
  UpdateDecision decision;
  decision.status_line = kUpToDateText;
  if (records.empty()) return decision;
  std::vector<const VersionRecord*> order;
  for (const VersionRecord& record : records) order.push_back(&record);
  std::ranges::stable_sort(order, [](const VersionRecord* a, const VersionRecord* b) {
    return a->version > b->version;
  });
  const VersionRecord& newest = *order.front();
  decision.version_text = VersionText(newest.version);
  decision.head_log = newest.log;
  for (size_t i = 1; i < order.size(); ++i) decision.previous_logs += order[i]->log;
  decision.newer_available = newest.version > own;
  if (decision.newer_available) {
    char line[96];
    std::snprintf(line, sizeof line, kUpdateAvailableFormat, decision.version_text.c_str());
    decision.status_line = line;
  }
  return decision;
}

}  // namespace korvanel
