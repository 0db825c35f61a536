#pragma once

// The text line reader shared by the program's own files. A line feed ends a
// line, carriage returns are dropped wherever they stand, and a last line
// without a line feed is kept.
//
// Checked mode protects a file against edits by hand: its last non-blank line
// holds the CRC-32 (hexadecimal) of every section line ("[...]") and key line
// (one holding "=") that is not a comment (";"), each taken with a line feed
// after it, in file order. A last line ";<hex>" switches the check off.

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace korvanel {

// Settings files are small; anything larger is damaged or not one.
inline constexpr uint64_t kMaxLineReadFileSize = 16 * 1024 * 1024;

enum class LineReadStatus {
  kOk,
  kMissing,           // nothing at the path
  kCannotOpen,
  kNotRegularFile,    // a folder, pipe, device...: never read, it may not end
  kTooLarge,          // over kMaxLineReadFileSize
  kReadError,
  kChecksumMissing,   // checked mode: the last line holds no checksum
  kChecksumMismatch,  // checked mode: the content does not match its checksum
};

struct LineReadOptions {
  bool checked = false;
  // Longer lines are cut here (the rest up to the line feed is skipped) so that
  // a damaged or binary file cannot make the reader hold huge lines.
  size_t max_line_length = 64 * 1024;
};

struct LineReadResult {
  LineReadStatus status = LineReadStatus::kCannotOpen;
  // In checked mode the checksum line (and blank lines after it) are removed.
  std::vector<std::string> lines;
  // 1-based numbers of the lines that were cut at max_line_length.
  std::vector<uint32_t> cut_lines;
};

LineReadResult ReadTextLines(const std::filesystem::path& path, const LineReadOptions& options);

// What went wrong, to follow a file's name: "is not a regular file"; empty
// for kOk.
const char* LineReadProblem(LineReadStatus status);

// The checksum of `lines` as checked mode computes it.
uint32_t SectionAndKeyLinesCrc(const std::vector<std::string>& lines);

}  // namespace korvanel
