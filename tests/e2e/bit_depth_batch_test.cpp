// 10-bit samples in 16-bit words, with ffmpeg (a different program) as the
// oracle: frames it makes from its test source are read sample for sample
// as its own 16-bit conversion of them says, shown white at 2^n - 1, and
// counted by the statistics over the same values.
#include <gtest/gtest.h>

#include <QImage>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "support/program_runner.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::ProgramRun;

constexpr const char* kSize = "64x48";

bool HaveFfmpeg() { return std::system("ffmpeg -version >/dev/null 2>&1") == 0; }

std::vector<uint16_t> Words(const std::string& bytes) {
  std::vector<uint16_t> words(bytes.size() / 2);
  for (size_t i = 0; i < words.size(); ++i) {
    words[i] = static_cast<uint16_t>(static_cast<uint8_t>(bytes[2 * i]) |
                                     static_cast<uint8_t>(bytes[2 * i + 1]) << 8);
  }
  return words;
}

class BitDepthBatch : public ::testing::Test {
 protected:
  ProgramRun Run(std::vector<std::string> arguments) {
    arguments.push_back("-q");
    return runner.Run(arguments);
  }
  // ffmpeg's test source drawn at 10 bits, written as `pix_fmt`.
  bool Ffmpeg(const std::string& arguments) {
    const std::string command = "cd " + test::ShellQuote(dir.path().string()) + " && ffmpeg -v error -y " +
                                arguments + " >/dev/null 2>&1";
    return std::system(command.c_str()) == 0;
  }
  std::string File(const char* name) const { return test::ReadWholeFile(dir / name); }

  test::TempDir dir;
  test::ProgramRunner runner{dir};
};

struct OracleRow {
  const char* pix_fmt;     // the clip, and the name Korvanel opens it by
  const char* source_fmt;  // the 10-bit planar form ffmpeg draws it in
  const char* wide_fmt;    // ffmpeg's 16-bit form of the same samples
  const char* wide_expr;   // the same layout as a plain 16-bit expression
  uint32_t shift;          // bits the 16-bit form puts below the 10
};

// Every sample: the clip opened by name and converted to the plain 16-bit
// layout (10 -> 16 bits keeps the value in the top bits) equals ffmpeg's
// own 16-bit conversion after the same shift; saving the clip as it came
// gives back its bytes.
TEST_F(BitDepthBatch, ReadsEverySampleOfFfmpegClips) {
  if (!HaveFfmpeg()) GTEST_SKIP() << "ffmpeg is not installed (scripts/bootstrap installs it)";
  const OracleRow rows[] = {
      {"gray10le", "gray10le", "gray16le", "P,Y,16", 6},
      {"p010le", "yuv420p10le", "p016le", "PI,YYYYUV,16", 6},
      {"yuv422p10le", "yuv422p10le", "yuv422p16le", "P,YY,U,V,16", 6},
  };
  for (const OracleRow& row : rows) {
    const std::string clip = std::string(row.pix_fmt) + ".raw";
    ASSERT_TRUE(Ffmpeg(std::string("-f lavfi -i testsrc2=s=") + kSize + ",format=" + row.source_fmt +
                       " -frames 1 -pix_fmt " + row.pix_fmt + " -f rawvideo " + clip));
    ASSERT_TRUE(Ffmpeg(std::string("-f rawvideo -pix_fmt ") + row.pix_fmt + " -s " + kSize + " -i " + clip +
                       " -pix_fmt " + row.wide_fmt + " -f rawvideo wide.raw"));
    const ProgramRun run = Run({clip, "-dims", kSize, "-fmt", row.pix_fmt, "-s", "ovr", "name", "same.raw",
                                "-cnv", "fmt", row.wide_expr, "-s", "ovr", "name", "ours.raw"});
    ASSERT_EQ(run.status, 0) << row.pix_fmt << ": " << run.output;
    EXPECT_EQ(File("same.raw"), File(clip.c_str())) << row.pix_fmt;
    const std::vector<uint16_t> ours = Words(File("ours.raw"));
    const std::vector<uint16_t> wide = Words(File("wide.raw"));
    ASSERT_EQ(ours.size(), wide.size()) << row.pix_fmt;
    size_t differing = 0;
    for (size_t i = 0; i < ours.size(); ++i) differing += (ours[i] >> row.shift) != (wide[i] >> row.shift);
    EXPECT_EQ(differing, 0u) << row.pix_fmt << " of " << ours.size() << " samples";
  }
}

TEST_F(BitDepthBatch, StatisticsCountTheTenBitValues) {
  if (!HaveFfmpeg()) GTEST_SKIP() << "ffmpeg is not installed (scripts/bootstrap installs it)";
  ASSERT_TRUE(Ffmpeg(std::string("-f lavfi -i testsrc2=s=") + kSize +
                     ",format=gray10le -frames 1 -f rawvideo g.raw"));
  const std::vector<uint16_t> values = Words(File("g.raw"));
  double sum = 0;
  for (uint16_t v : values) sum += v;
  const ProgramRun run = Run({"g.raw", "-dims", kSize, "-fmt", "Y10", "-sst", "name", "g.stat.txt"});
  ASSERT_EQ(run.status, 0) << run.output;
  const std::string stats = File("g.stat.txt");
  EXPECT_EQ(stats.rfind("<Luma-10>\n", 0), 0u) << stats.substr(0, 40);
  char mean[32];
  std::snprintf(mean, sizeof(mean), "%7.2lf", sum / static_cast<double>(values.size()));
  EXPECT_NE(stats.find(std::string("  Mean                = ") + mean + "\n"), std::string::npos) << mean;
}

// 2^n - 1 is white at any n; grey and YUV alike.
TEST_F(BitDepthBatch, TenBitWhiteShowsWhite) {
  const uint16_t grey[] = {1023, 512, 0, 0};
  dir.Write("w.raw", std::string(reinterpret_cast<const char*>(grey), sizeof(grey)));
  // P010 2x2: Y 1023 everywhere, one neutral chroma pair, words MSB-aligned.
  const uint16_t p010[] = {0xFFC0, 0xFFC0, 0xFFC0, 0xFFC0, 0x8000, 0x8000};
  dir.Write("w.p010", std::string(reinterpret_cast<const char*>(p010), sizeof(p010)));
  const ProgramRun run = Run({"w.raw", "-dims", "4x1", "-fmt", "LSB=10,P,Y,16", "-spng", "name", "w.png",
                              "-op", "w.p010", "-dims", "2x2", "-fmt", "p010", "-spng", "name", "p.png"});
  ASSERT_EQ(run.status, 0) << run.output;
  const QImage w(QString::fromStdString((dir / "w.png").string()));
  ASSERT_EQ(w.size(), QSize(4, 1));
  EXPECT_EQ(w.pixel(0, 0), qRgb(255, 255, 255));
  EXPECT_EQ(w.pixel(1, 0), qRgb(128, 128, 128));
  EXPECT_EQ(w.pixel(2, 0), qRgb(0, 0, 0));
  const QImage p(QString::fromStdString((dir / "p.png").string()));
  ASSERT_EQ(p.size(), QSize(2, 2));
  EXPECT_EQ(p.pixel(1, 1), qRgb(255, 255, 255));
}

// Convert keeps the top bits of the significant ones; an I-Eval result of
// one image at its depth keeps its layout, so it saves MSB-aligned again.
TEST_F(BitDepthBatch, ConvertAndIEvalWorkOnTheSignificantBits) {
  const uint16_t lsb[] = {1023, 512, 4, 3};
  dir.Write("l.raw", std::string(reinterpret_cast<const char*>(lsb), sizeof(lsb)));
  const uint16_t msb[] = {0x8000, 0x0040, 0x0000, 0x7FC0};
  dir.Write("m.raw", std::string(reinterpret_cast<const char*>(msb), sizeof(msb)));
  const ProgramRun run = Run({"l.raw", "-dims", "4x1", "-fmt", "LSB=10,P,Y,16", "-cnv", "fmt", "P,Y,8", "-s",
                              "name", "c8.raw", "-op", "m.raw", "-dims", "4x1", "-fmt", "MSB=10,P,Y,16", "-e",
                              "ieval_expr", "{i+1}", "-s", "name", "e.raw"});
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(File("c8.raw"), std::string("\xFF\x80\x01\x00", 4));
  EXPECT_EQ(Words(File("e.raw")), (std::vector<uint16_t>{0x8040, 0x0080, 0x0040, 0x8000}));
}

// Bad attributes: one parse line in the format log, the batch error, exit
// status 255, and nothing opened or written.
TEST_F(BitDepthBatch, BadAttributesAreRefusedBeforeAnythingOpens) {
  dir.Write("a.raw", std::string(8, '\0'));
  const std::pair<const char*, const char*> rows[] = {
      {"LSB=16,P,Y,16", "Illegal LSB value '16'"},
      {"LSB=10,LSB=12,P,Y,16", "LSB is given twice"},
      {"LSB=10,MSB=10,P,Y,16", "LSB and MSB exclude each other"},
      {"A,LSB=10,P,Y,16", "LSB can't be used with A"},
      {"LSB=8,P,Y,8", "Illegal LSB value '8'"},
  };
  for (const auto& [expression, reason] : rows) {
    std::filesystem::remove(dir / "qel.log_fmt.txt");
    const ProgramRun run = Run({"a.raw", "-dims", "2x2", "-fmt", expression, "-s", "name", "out.raw"});
    EXPECT_EQ(run.status, 255) << expression;
    EXPECT_EQ(run.output, std::string("Illegal format '") + expression + "'\n") << expression;
    EXPECT_NE(File("qel.log_fmt.txt").find(std::string("Parse error [#0]: ") + reason + "\n"), std::string::npos)
        << expression;
    EXPECT_FALSE(std::filesystem::exists(dir / "out.raw")) << expression;
  }
}

}  // namespace
}  // namespace korvanel
