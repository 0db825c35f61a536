#pragma once

// The drop-down histories of the viewer's dialogs: per field tag (such as
// "[FC_FILTER_EXPR]") the last 40 distinct texts, most recent first, kept in
// "Korvanel.dat" in the work path.
//
// File format (plain text, one item per line, line feed ends a line):
//   # comment                 ignored, as is any line not described here
//   [TAG]                     starts the list of that tag
//   =text                     one entry of the current tag, most recent first
// In an entry a backslash is written "\\", a line feed "\n" and a carriage
// return "\r", so every entry stays on one line. Tags the program does not
// know are kept and written back unchanged. Entries before any tag, lines
// longer than kMaxEditHistoryLine and entries beyond 40 per tag are dropped,
// so a damaged file loads what it can. An entry whose stored line would be
// longer than that is not kept either (not even when added), so that what is
// stored always loads again.

#include <cstddef>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/line_reader.h"

namespace korvanel {

inline constexpr const char* kEditHistoryFileName = "Korvanel.dat";
inline constexpr size_t kEditHistoryDepth = 40;
inline constexpr size_t kMaxEditHistoryLine = 8 * 1024;

class CEditHistory {
 public:
  // Puts `text` first under `tag`, removing an equal older entry and the
  // oldest beyond the depth. Blank texts are not remembered.
  void Add(std::string_view tag, std::string_view text);
  // Most recent first; empty for a tag never seen.
  const std::vector<std::string>& Entries(std::string_view tag) const;
  std::vector<std::string> Tags() const;

  // Replaces the content with the file's; anything but kOk leaves it empty.
  LineReadStatus Load(const std::filesystem::path& path);
  // Puts `newer`'s entries first in each of its lists, as if added here.
  void AddNewer(const CEditHistory& newer);
  // Writes a fresh file beside the old one and renames it over, so a failed
  // write never leaves a half file; false when it cannot be written.
  bool Store(const std::filesystem::path& path) const;

 private:
  std::map<std::string, std::vector<std::string>, std::less<>> lists_;
};

// What a dialog's state gives the history after a successful apply: the
// current text of each of its drop-down fields under the field's tag.
class IEditHistoryAccessor {
 public:
  virtual ~IEditHistoryAccessor() = default;
  virtual void RecordEditHistory(CEditHistory& history) const = 0;
};

}  // namespace korvanel
