#pragma once

// The one logger type behind every text log of the program. Lines collect in
// memory and are appended to the file on Flush(), so a log grows across
// sessions until the user deletes it. The first entry of a process opens a
// session with a header; entries are numbered from 1. A file that cannot be
// opened is skipped silently: logging never reports errors of its own.
// Loggers are used from the main thread only.

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "image/line_sink.h"

namespace korvanel {

enum class StampMode : uint32_t {
  kNone = 0,        // no time stamps
  kSession = 1,     // the session header carries the date and time
  kEveryEntry = 2,  // the session header and every entry carry them
};

// "<local long date> :: <HH:MM:SS>", e.g. "Monday, March 3, 2025 :: 14:05:09".
std::string LocalTimeStamp();

class CLogger final : public ILineSink {
 public:
  using StampSource = std::string (*)();

  static constexpr uint32_t kFirstEntryNumber = 1;

  void SetEnabled(bool enabled) { enabled_ = enabled; }
  bool Enabled() const { return enabled_; }
  void SetStampMode(StampMode mode) { stamp_mode_ = mode; }
  StampMode GetStampMode() const { return stamp_mode_; }
  void SetPath(std::filesystem::path path) { path_ = std::move(path); }
  const std::filesystem::path& Path() const { return path_; }
  // Off: each flush replaces the file instead of appending to it.
  void SetAppend(bool append) { append_ = append; }
  void SetFlushEnabled(bool flush_enabled) { flush_enabled_ = flush_enabled; }
  // Tests replace the clock to get fixed texts.
  void SetStampSource(StampSource source) { stamp_source_ = source; }

  // Writes the session header when none was written yet, then (for a
  // non-empty `text`) a separator and the numbered entry header.
  void BeginEntry(std::string_view text) override;
  void AddLine(std::string_view line) override;
  void AddLineF(const char* format, ...) __attribute__((format(printf, 2, 3)));
  // Adds an empty line and writes every pending line to the file.
  void Flush() override;

  const std::vector<std::string>& PendingLines() const { return lines_; }

 private:
  bool enabled_ = false;
  StampMode stamp_mode_ = StampMode::kNone;
  bool session_open_ = false;
  uint32_t entry_number_ = kFirstEntryNumber;
  std::vector<std::string> lines_;
  std::filesystem::path path_;
  bool append_ = true;
  bool flush_enabled_ = true;
  StampSource stamp_source_ = LocalTimeStamp;
};

}  // namespace korvanel
