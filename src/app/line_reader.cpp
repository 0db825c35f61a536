#include "app/line_reader.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

#include "app/crc32.h"
#include "image/text_util.h"

namespace korvanel {
namespace {

// A descriptor closed when it goes out of scope.
class FileDescriptor {
 public:
  explicit FileDescriptor(int fd) : fd_(fd) {}
  ~FileDescriptor() {
    if (fd_ >= 0) close(fd_);
  }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

// Lets only a regular file of a sane size through: a pipe, device or folder
// may never end (or block), so it is not read at all.
LineReadStatus CheckRegularFile(int fd) {
  struct stat info {};
  if (fstat(fd, &info) != 0) return LineReadStatus::kReadError;
  if (!S_ISREG(info.st_mode)) return LineReadStatus::kNotRegularFile;
  if (static_cast<uint64_t>(info.st_size) > kMaxLineReadFileSize) return LineReadStatus::kTooLarge;
  return LineReadStatus::kOk;
}

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

const char* LineReadProblem(LineReadStatus status) {
  switch (status) {
    case LineReadStatus::kOk: return "";
    case LineReadStatus::kMissing: return "does not exist";
    case LineReadStatus::kCannotOpen: return "cannot be opened";
    case LineReadStatus::kNotRegularFile: return "is not a regular file";
    case LineReadStatus::kTooLarge: return "is larger than 16 MiB";
    case LineReadStatus::kReadError: return "cannot be read";
    case LineReadStatus::kChecksumMissing: return "has no checksum line";
    case LineReadStatus::kChecksumMismatch: return "does not match its checksum";
  }
  return "cannot be read";
}

LineReadResult ReadTextLines(const std::filesystem::path& path, const LineReadOptions& options) {
  LineReadResult result;
  // Non-blocking, so that opening a pipe without a writer returns at once.
  const FileDescriptor file(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  if (file.get() < 0) {
    result.status = errno == ENOENT || errno == ENOTDIR ? LineReadStatus::kMissing
                                                        : LineReadStatus::kCannotOpen;
    return result;
  }
  result.status = CheckRegularFile(file.get());
  if (result.status != LineReadStatus::kOk) return result;

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
  uint64_t total = 0;
  for (;;) {
    const ssize_t got = read(file.get(), buffer, sizeof buffer);
    if (got == 0) break;
    if (got < 0 && errno == EINTR) continue;
    if (got > 0) total += static_cast<uint64_t>(got);
    // A file that grows while read is held to the same cap as its size.
    if (got < 0 || total > kMaxLineReadFileSize) {
      return LineReadResult{got < 0 ? LineReadStatus::kReadError : LineReadStatus::kTooLarge, {}, {}};
    }
    for (size_t i = 0; i < static_cast<size_t>(got); ++i) {
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
