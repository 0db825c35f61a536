#pragma once

// The update document: a plain-text list of released versions with their
// change logs, and the decision whether one of them is newer than ours.
//
//   <version>
//   1.5
//   change-log line
//   </version>
//   ...
//   <version_end>
//
// Lines end in CR LF; a bare LF is accepted as well. Lines outside records
// are ignored. A version line that does not read as two numbers, or a
// document without the end line, rejects the whole document.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvanel {

struct VersionNumber {
  int32_t major = 0;
  int32_t minor = 0;
  friend auto operator<=>(const VersionNumber&, const VersionNumber&) = default;
};

struct VersionRecord {
  VersionNumber version;
  std::string log;  // the record's lines, each ended by "\n"
};

inline constexpr const char* kUpdateAvailableFormat = "Available update: version %s";
inline constexpr const char* kUpToDateText = "Application is up to date, no new version is available";

struct UpdateDecision {
  bool newer_available = false;
  std::string version_text;  // "%d.%d" of the newest record; empty when none
  std::string status_line;   // kUpdateAvailableFormat or kUpToDateText
  std::string head_log;      // the newest record's log
  std::string previous_logs; // the other records' logs, newest first
};

// The records in document order, or nothing when the document is invalid.
std::optional<std::vector<VersionRecord>> ParseUpdateDocument(std::string_view text);

// The newest record by (major, minor), whatever the order of the records,
// compared with `own`.
UpdateDecision DecideUpdate(const std::vector<VersionRecord>& records, VersionNumber own);

// The version as "%d.%d".
std::string VersionText(VersionNumber version);

}  // namespace korvanel
