#include "app/line_reader.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "app/crc32.h"
#include "image/text_util.h"
#include "support/temp_dir.h"
#include "support/time_limit.h"

namespace korvanel {
namespace {

using test::TempDir;
using Lines = std::vector<std::string>;

TEST(Crc32, MatchesTheCommonCheckValues) {
  EXPECT_EQ(Crc32(""), 0u);
  EXPECT_EQ(Crc32("123456789"), 0xCBF43926u);
  EXPECT_EQ(Crc32("The quick brown fox jumps over the lazy dog"), 0x414FA339u);
  // Continuing over pieces gives the value of the whole.
  EXPECT_EQ(Crc32("6789", Crc32("12345")), 0xCBF43926u);
}

struct SplitCase {
  const char* name;
  std::string_view content;
  Lines lines;
};

void PrintTo(const SplitCase& c, std::ostream* os) {
  *os << c.name;
}

class LineSplitting : public ::testing::TestWithParam<SplitCase> {};

TEST_P(LineSplitting, EndsLinesAtLineFeedsOnly) {
  TempDir dir;
  const LineReadResult result = ReadTextLines(dir.Write("f.txt", GetParam().content), {});
  EXPECT_EQ(result.status, LineReadStatus::kOk);
  EXPECT_EQ(result.lines, GetParam().lines);
  EXPECT_TRUE(result.cut_lines.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Forms, LineSplitting,
    ::testing::Values(SplitCase{"empty", "", {}},
                      SplitCase{"last_line_without_feed", "a\nb", {"a", "b"}},
                      SplitCase{"last_line_with_feed", "a\nb\n", {"a", "b"}},
                      SplitCase{"crlf", "a=1\r\nb=2\r\n", {"a=1", "b=2"}},
                      SplitCase{"stray_carriage_return", "a\rb\n\r", {"ab", ""}},
                      SplitCase{"blank_lines_kept", "\n\nx\n", {"", "", "x"}},
                      SplitCase{
                          "nul_byte", std::string_view("a\0b\n", 4), {std::string("a\0b", 3)}}));

// Things that stand where a settings file is expected but are none: each is
// refused at once, never read until it ends (a pipe blocks, /dev/zero never
// ends). Read in a child process so that a regression fails, not hangs.
TEST(LineReader, RefusesWhatIsNoRegularFileOrTooLarge) {
  TempDir dir;
  struct Case {
    const char* name;
    std::filesystem::path path;
    LineReadStatus status;
  };
  mkfifo((dir / "fifo").c_str(), 0600);
  std::filesystem::create_symlink("/dev/zero", dir / "zero");
  std::filesystem::create_directory(dir / "folder");
  const std::filesystem::path large = dir.Write("large", "[gui]\n");
  std::filesystem::resize_file(large, kMaxLineReadFileSize + 1);
  const Case cases[] = {
      {"missing", dir / "absent", LineReadStatus::kMissing},
      {"fifo", dir / "fifo", LineReadStatus::kNotRegularFile},
      {"link to /dev/zero", dir / "zero", LineReadStatus::kNotRegularFile},
      {"folder", dir / "folder", LineReadStatus::kNotRegularFile},
      {"larger than the cap", large, LineReadStatus::kTooLarge},
  };
  for (const Case& c : cases) {
    const int code = test::ExitCodeWithin(std::chrono::seconds(10), [&] {
      const LineReadResult result = ReadTextLines(c.path, {});
      return result.lines.empty() ? static_cast<int>(result.status) : 100;
    });
    EXPECT_EQ(code, static_cast<int>(c.status)) << c.name;
  }
}

TEST(LineReader, CutsOverlongLinesAndNamesThem) {
  TempDir dir;
  const std::string huge(200000, 'x');
  LineReadOptions options;
  options.max_line_length = 10;
  const LineReadResult result =
      ReadTextLines(dir.Write("f.txt", "short\n" + huge + "\nend\n" + huge), options);
  EXPECT_EQ(result.lines, (Lines{"short", std::string(10, 'x'), "end", std::string(10, 'x')}));
  EXPECT_EQ(result.cut_lines, (std::vector<uint32_t>{2, 4}));
}

// A file body and its checksum line as a tool outside the program makes it:
// the CRC of the section and key lines, each with its line feed.
const char* const kBody = "; settings\n[gui]\n  ; def_zoom=3\ndef_zoom=0\n\nnot a key\n[system]\n";
const char* const kCounted = "[gui]\ndef_zoom=0\n[system]\n";

struct CheckedCase {
  const char* name;
  std::string last_line;
  LineReadStatus status;
};

void PrintTo(const CheckedCase& c, std::ostream* os) {
  *os << c.name;
}

class CheckedMode : public ::testing::TestWithParam<CheckedCase> {};

TEST_P(CheckedMode, ChecksTheLastLine) {
  TempDir dir;
  LineReadOptions options;
  options.checked = true;
  const LineReadResult result =
      ReadTextLines(dir.Write("f.txt", std::string(kBody) + GetParam().last_line), options);
  EXPECT_EQ(result.status, GetParam().status);
  if (GetParam().status == LineReadStatus::kOk) {
    EXPECT_EQ(result.lines, (Lines{"; settings", "[gui]", "  ; def_zoom=3", "def_zoom=0", "",
                                   "not a key", "[system]"}));
  }
}

const std::string kGoodCrc = StrFormat("%08X", Crc32(kCounted));
const std::string kGoodCrcLower = StrFormat("%x", Crc32(kCounted));
const std::string kBadCrc = StrFormat("%08X", Crc32(kCounted) ^ 1u);

INSTANTIATE_TEST_SUITE_P(
    Forms, CheckedMode,
    ::testing::Values(CheckedCase{"correct", kGoodCrc + "\n", LineReadStatus::kOk},
                      CheckedCase{"lower_case_trailing_blanks", kGoodCrcLower + "\n\n\n",
                                  LineReadStatus::kOk},
                      CheckedCase{"changed", kBadCrc + "\n", LineReadStatus::kChecksumMismatch},
                      CheckedCase{"switched_off", ";" + kBadCrc, LineReadStatus::kOk},
                      CheckedCase{"not_hex", "checksum\n", LineReadStatus::kChecksumMissing},
                      CheckedCase{"too_long", "123456789\n", LineReadStatus::kChecksumMissing},
                      CheckedCase{"absent", "", LineReadStatus::kChecksumMissing}));

TEST(CheckedFile, RejectsAChangedKeyButNotAChangedComment) {
  TempDir dir;
  LineReadOptions options;
  options.checked = true;
  const std::string crc = "\n" + kGoodCrc + "\n";
  std::string changed_comment = std::string(kBody) + crc;
  changed_comment.replace(changed_comment.find("settings"), 8, "SETTINGS");
  EXPECT_EQ(ReadTextLines(dir.Write("a.txt", changed_comment), options).status,
            LineReadStatus::kOk);
  std::string changed_key = std::string(kBody) + crc;
  changed_key.replace(changed_key.find("def_zoom=0"), 10, "def_zoom=1");
  EXPECT_EQ(ReadTextLines(dir.Write("b.txt", changed_key), options).status,
            LineReadStatus::kChecksumMismatch);
}

TEST(CheckedFile, OffByDefaultKeepsTheChecksumLine) {
  TempDir dir;
  const LineReadResult result = ReadTextLines(dir.Write("f.txt", "[gui]\n" + kBadCrc), {});
  EXPECT_EQ(result.status, LineReadStatus::kOk);
  EXPECT_EQ(result.lines, (Lines{"[gui]", kBadCrc}));
}

}  // namespace
}  // namespace korvanel
