#include "app/logger.h"

#include <cstdarg>
#include <cstdio>
#include <ctime>

#include "app/owned_file.h"
#include "image/text_util.h"

namespace korvanel {
namespace {

constexpr const char* kSessionRule =
    "---xxx----------------------------------------------------------------------------------------"
    "xxx---";
constexpr size_t kEntryRuleLength = 100;

std::string FormatTime(const char* format, const std::tm& time) {
  char buffer[128];
  const size_t n = std::strftime(buffer, sizeof buffer, format, &time);
  return std::string(buffer, n);
}

}  // namespace

std::string LocalTimeStamp() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  // The day of the month without a leading zero, as long dates are written.
  return FormatTime("%A, %B ", local) + std::to_string(local.tm_mday) +
         FormatTime(", %Y :: %H:%M:%S", local);
}

void CLogger::BeginEntry(std::string_view text) {
  if (!enabled_) return;
  const bool stamped_session = stamp_mode_ != StampMode::kNone;
  if (!session_open_) {
    lines_.emplace_back(kSessionRule);
    lines_.push_back(stamped_session ? "Session start [" + stamp_source_() + "]"
                                     : std::string("Session start"));
    session_open_ = true;
  }
  if (text.empty()) return;
  lines_.emplace_back(kEntryRuleLength, '-');
  const std::string title(text);
  lines_.push_back(
      stamp_mode_ == StampMode::kEveryEntry
          ? StrFormat("Entry %u [%s]: %s", entry_number_, stamp_source_().c_str(), title.c_str())
          : StrFormat("Entry %u: %s", entry_number_, title.c_str()));
  ++entry_number_;
}

void CLogger::AddLine(std::string_view line) {
  if (enabled_) lines_.emplace_back(line);
}

void CLogger::AddLineF(const char* format, ...) {
  if (!enabled_) return;
  va_list args;
  va_start(args, format);
  lines_.push_back(StrFormatV(format, args));
  va_end(args);
}

void CLogger::Flush() {
  if (!enabled_ || !flush_enabled_ || lines_.empty()) return;
  lines_.emplace_back();
  const OwnedFile file(std::fopen(path_.c_str(), append_ ? "a" : "w"));
  if (file) {
    for (const std::string& line : lines_) {
      std::fwrite(line.data(), 1, line.size(), file.get());
      std::fputc('\n', file.get());
    }
  }
  // Lines of a log that cannot be written are dropped rather than kept forever.
  lines_.clear();
}

}  // namespace korvanel
