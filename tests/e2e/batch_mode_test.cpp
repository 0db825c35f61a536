// The window-less product: the real program run on files in a fresh folder,
// checked by exit status, standard output and the files it leaves.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/program_runner.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::ProgramRun;

class BatchMode : public ::testing::Test {
 protected:
  BatchMode() {
    dir.Write("Korvanel.fmt",
              "<format_group>\nfile_pattern = [.*_(\\d+)x(\\d+)\\.y8]\n"
              "width = [.*_(\\d+)x(\\d+)\\.y8],$1\nheight = [.*_(\\d+)x(\\d+)\\.y8],$2\n"
              "format = [],P,Y,8\n</format_group>\n");
    dir.Write("a_4x2.y8", "ABCDEFGH");
    dir.Write("b_4x2.y8", "abcdefgh");
    dir.Write("c_2x2.y8", "wxyz");
  }
  // Without -q the program opens its window; these runs are the window-less
  // product. A batch file names its own -q.
  ProgramRun Run(std::vector<std::string> arguments) {
    const bool from_file = !arguments.empty() && arguments.front() == "-bt";
    if (!from_file && std::find(arguments.begin(), arguments.end(), "-q") == arguments.end()) {
      arguments.push_back("-q");
    }
    return runner.Run(arguments);
  }

  test::TempDir dir;
  test::ProgramRunner runner{dir};
};

TEST_F(BatchMode, HelpEndsWithStatusZero) {
  ProgramRun run = Run({"-h"});
  EXPECT_EQ(run.status, 0);
  EXPECT_NE(run.output.find("usage: korvanel"), std::string::npos);
  run = Run({"a_4x2.y8", "--help", "-cls", "0"});  // help wins, later errors are never seen
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output.rfind("KORVANEL MANUAL", 0), 0u);
  EXPECT_NE(run.output.find("COMMAND LINE AND BATCH FILES"), std::string::npos);
}

// Without a display the window cannot start; everything that needs no window
// still works. The test's own environment is restored afterwards.
TEST_F(BatchMode, WithoutADisplayOnlyTheWindowRefuses) {
  const char* names[] = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
  std::vector<std::pair<std::string, std::string>> saved;
  for (const char* name : names) {
    if (const char* value = std::getenv(name)) saved.emplace_back(name, value);
    unsetenv(name);
  }
  struct Row {
    std::vector<std::string> arguments;
    int status;
    std::string output;
  };
  const Row rows[] = {
      {{}, 255, "korvanel: no display; use -q to run without a window\n"},
      {{"a_4x2.y8"}, 255, "korvanel: no display; use -q to run without a window\n"},
      {{"a_4x2.y8", "-q"}, 0, "Loading image a_4x2.y8...\n"},
      {{"-cls", "0"}, 255, "Command line parser error: -cls expects one or more open images index\n"},
  };
  for (const Row& row : rows) {
    const ProgramRun run = runner.Run(row.arguments);
    EXPECT_EQ(run.status, row.status) << row.output;
    EXPECT_EQ(run.output, row.output);
  }
  for (const auto& [name, value] : saved) setenv(name.c_str(), value.c_str(), 1);
}

TEST_F(BatchMode, ParserErrorsPrintTheirLinesAndFail) {
  struct Row {
    std::vector<std::string> arguments;
    std::string output;
  };
  const Row rows[] = {
      {{"x.raw", "-q", "--batch_file", "cmds.txt"},
       "Command line parser error: --batch_file batch file to parse must appear as first argument only\n"},
      {{"-cls", "0"}, "Command line parser error: -cls expects one or more open images index\n"},
      {{"-cls", "21"}, "Command line parser error: -cls expects one or more open images index\n"},
      {{"-cmp", "3"}, "Command line parser error: -cmp expects at least 2 images indexes to compare\n"},
      {{"-op"}, "Command line parser error: -op expects a path as next argument\n"},
      {{"a.raw", "-dims", "640"},
       "Command line parser error: -dims expects a width x height (e.g. 50x100) as next argument after -dims, -wh\n"},
      {{"a.raw", "-wh", "0x480"}, "Command line parser error: -wh image width, height must have some positive (>0) value\n"},
      {{"-q", "-dims", "4x4"},
       "Command line parser error: -dims image dimension must appear in the context of a recent opened image\n"},
      {{"a.raw", "-fmt"},
       "Command line parser error: -fmt image format expression is expected after -fmt_expr, -format_str\n"
       "e.g. P,Y,8   ; I,RGB,16   ; PI,YYYYUV,8\n"},
      {{"-bt", "missing.txt"}, "can't open batch file: missing.txt\n"},
      {{"-roi"},
       "Command line parser error: -roi expects rectangular area: min_x,min_y..max_x,max_y or min_x,min_y,width x height.\n"
       "e.g. 10,32..110,240   ;   1,59,30x40\n"},
      {{"-roi", "10;32"},
       "Command line parser error: -roi can't parse rectangular area: min_x,min_y..max_x,max_y or min_x,min_y,width x height.\n"
       "e.g. 10,32,110..240   ;   1,59,30x40\n"},
  };
  for (const Row& row : rows) {
    const ProgramRun run = Run(row.arguments);
    EXPECT_EQ(run.status, 255) << row.output;
    EXPECT_EQ(run.output, row.output);
  }
}

TEST_F(BatchMode, OpensComparesAndClosesWithNegativeReferences) {
  const ProgramRun run = Run({"a_4x2.y8", "b_4x2.y8", "-op", "c_2x2.y8", "-cmp", "1,-2", "-cls", "-1", "-q"});
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nLoading image b_4x2.y8...\nLoading image c_2x2.y8...\n");
}

TEST_F(BatchMode, CloseListsResolveEveryReferenceBeforeClosing) {
  // Closing 1 first would leave no image 3; both orders close a and c.
  for (const char* list : {"1,3", "-3 -1"}) {
    const ProgramRun run = Run({"a_4x2.y8", "b_4x2.y8", "c_2x2.y8", "-cls", list, "-n", "1"});
    EXPECT_EQ(run.status, 0) << list << run.output;
    EXPECT_NE(run.output.find("New image: Successfully created New_Copy_b_4x2.y8 (HK id 2)"), std::string::npos)
        << list << run.output;
  }
}

TEST_F(BatchMode, TheFirstFailedCommandEndsTheRun) {
  const ProgramRun run = Run({"a_4x2.y8", "-cls", "2", "-op", "b_4x2.y8"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nCan't close: invalid image index 2 (1)\n");
}

TEST_F(BatchMode, OpenFailuresSayWhy) {
  ProgramRun run = Run({"c_2x2.y8", "-op", "nothing.raw"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.output,
            "Loading image c_2x2.y8...\n[File doesn't exist]: Can't locate nothing.raw\nOpen image failed\n");
  dir.Write("blob.bin", std::string(12, 'q'));
  run = Run({"blob.bin", "-dims", "2x2"});
  EXPECT_EQ(run.output, "Loading image blob.bin...\n[Open image error]: Can't open blob.bin (unsupported format)\n"
                        "Can't open blob.bin with known size but none supplied format expression\n");
  run = Run({"blob.bin", "-fmt", "P,Y,7"});
  EXPECT_EQ(run.output, "Illegal format 'P,Y,7'\n");
  run = Run({"blob.bin", "-dims", "2x2", "-fmt", "i,rgb,8", "-roi", "0,0,2x2", "-roi", "1,1..2,2"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.output, "Loading image blob.bin...\nCan't set ROI: image index 1 size doesn't fit the roi (size = <2,2>)\n");
}

size_t Occurrences(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

// The format-load log is where users debug their expressions. A direct
// expression that did not parse left no trace there (its lines were never
// written), and one that did parse was logged twice.
TEST_F(BatchMode, DirectExpressionsReachTheFormatLoadLogOnce) {
  struct Row {
    std::vector<std::string> arguments;
    std::vector<std::string> lines;
  };
  dir.Write("blob.bin", std::string(4, 'q'));
  const Row rows[] = {
      {{"blob.bin", "-fmt", "X,Y,8", "-dims", "2x2"},
       {"Trying to set: [.*],X,Y,8", "Parse error [#0]: Illegal packing 'X'", "Status: Fail"}},
      {{"blob.bin", "-fmt", "X,Y,8"},
       {"Trying to set: [.*],X,Y,8", "Parse error [#0]: Illegal packing 'X'", "Status: Fail"}},
      {{"blob.bin", "-fmt", "p,y,8", "-dims", "2x2"}, {"Trying to set: [.*],P,Y,8", "Status: Success"}},
  };
  for (const Row& row : rows) {
    std::filesystem::remove(dir / "qel.log_fmt.txt");
    std::vector<std::string> arguments = row.arguments;
    arguments.push_back("-q");
    Run(arguments);
    const std::string log = test::ReadWholeFile(dir / "qel.log_fmt.txt");
    EXPECT_EQ(Occurrences(log, ": Set custom format expression\n"), 1u) << log;
    size_t at = log.find("Set custom format expression");
    for (const std::string& line : row.lines) {
      at = log.find("\n" + line + "\n", at);
      EXPECT_NE(at, std::string::npos) << line << " missing from\n" << log;
    }
  }
}

TEST_F(BatchMode, BatchFilesReadLinesAsOneArgumentList) {
  dir.Write("cmds.txt",
            "# -q would be a comment\n"
            "a_4x2.y8\n"
            "\"b_4x2.y8\" -roi\n"
            "1,0..2,1 -n\n"
            "use_roi   # not a comment here\n"
            "-q\n");
  const ProgramRun run = Run({"-bt", "cmds.txt", "ignored.raw"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.output, "Command line parser error: -n expects an image index\n");
  dir.Write("ok.txt", "a_4x2.y8\n\"b_4x2.y8\" -roi\n1,0..2,1 -n\nuse_roi\n-q\n");
  const ProgramRun ok = Run({"-bt", "ok.txt"});
  EXPECT_EQ(ok.status, 0) << ok.output;
  EXPECT_NE(ok.output.find("New image: Successfully created New_Copy_b_4x2.xy1_0_wh2x2.y8 (HK id 3)"),
            std::string::npos)
      << ok.output;
}

TEST_F(BatchMode, DiffTakesTheLatestTwoOrTheNamedPair) {
  ProgramRun run = Run({"a_4x2.y8", "b_4x2.y8", "-d", "type2", "-q"});
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_NE(run.output.find("Diff: Created difference image Diff_a_4x2.y8 <--> b_4x2.y8 ("), std::string::npos)
      << run.output;
  run = Run({"a_4x2.y8", "c_2x2.y8", "-d"});
  EXPECT_EQ(run.status, 255);
  EXPECT_NE(run.output.find("[Diff images error]: Diff error: left and right images are of different size\n"),
            std::string::npos)
      << run.output;
  run = Run({"a_4x2.y8", "-d"});
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nCan't diff: not enough open images\n");
  run = Run({"a_4x2.y8", "b_4x2.y8", "-d", "1,5"});
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nLoading image b_4x2.y8...\nCan't diff: invalid image index (1,5)\n");
}

TEST_F(BatchMode, FilterReportsItsOwnFailures) {
  ProgramRun run = Run({"a_4x2.y8", "-flt", "fexpr", "65-70", "nexpr", "0", "sep_comp"});
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_NE(run.output.find("Filter: Applied in "), std::string::npos) << run.output;
  run = Run({"a_4x2.y8", "-flt", "fexpr", "1;2"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nCan't filter: illegal expression (1;2 or )\n");
  run = Run({"a_4x2.y8", "-flt", "3", "fexpr", "*"});
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nCan't filter: invalid image index (3)\n");
  dir.Write("deep.bin", std::string(4, 'z'));
  run = Run({"deep.bin", "-dims", "1x1", "-fmt", "P,Y,32", "-flt", "fexpr", "*"});
  EXPECT_EQ(run.output, "Loading image deep.bin...\nCan't filter: illegal BPP (32)\n");
}

TEST_F(BatchMode, ConvertCreatesAndSavesTheNewFormat) {
  ProgramRun run = Run({"a_4x2.y8", "-cnv", "fmt", "i,rgb,8", "resize", "w*2;h;-1,0", "-s", "name", "out.rgb", "-q"});
  EXPECT_EQ(run.status, 255) << "an offset written with ',' is one tuple short";
  EXPECT_EQ(run.output, "Command line parser error: -cnv resize expects 2 or 4 value tuples.\n");
  run = Run({"a_4x2.y8", "-cnv", "fmt", "i,rgb,8", "resize", "w*2;h;4;0", "resize_tiled", "-s", "name",
             "out.rgb", "-q"});
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_NE(run.output.find("Converted new image ("), std::string::npos) << run.output;
  EXPECT_NE(run.output.find("): Created Converted_Copy_a_4x2.y8 (HK id 2)"), std::string::npos) << run.output;
  // 8 x 2 RGB, the grey source tiled from x = 4: R = G = B = the grey value.
  const std::string rgb = test::ReadWholeFile(dir / "out.rgb");
  ASSERT_EQ(rgb.size(), 8u * 2 * 3);
  EXPECT_EQ(rgb.substr(0, 6), "AAABBB");
  EXPECT_EQ(rgb.substr(12 * 3 - 6, 6), "GGGHHH");

  run = Run({"a_4x2.y8", "-cnv", "fmt", "Q,Y,8"});
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nConvert error: Illegal format 'Q,Y,8'\n");
  run = Run({"a_4x2.y8", "-cnv", "fmt", "P,Y,8", "resize", "w-w;h"});
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nConvert error: 0x2 isn't legal new size\n");
  run = Run({"a_4x2.y8", "-cnv", "4", "fmt", "P,Y,8"});
  EXPECT_EQ(run.output, "Loading image a_4x2.y8...\nCan't create new converted image: invalid image index (4)\n");
}

TEST_F(BatchMode, FormatsAndConfigurationFilesCanBeSwapped) {
  ProgramRun run = Run({"-ff", "missing.fmt"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(run.output, "Can't load format file 'missing.fmt'\n");
  run = Run({"-cf", "missing.ini"});
  EXPECT_EQ(run.output, "Can't load config file 'missing.ini'\n");
  dir.Write("other.fmt", "<format_group>\nfile_pattern = [.*\\.bin]\nwidth = 3\nheight = 1\nformat = [],P,Y,8\n</format_group>\n");
  dir.Write("three.bin", "xyz");
  run = Run({"-ff", "other.fmt", "-op", "three.bin", "-op", "a_4x2.y8"});
  EXPECT_EQ(run.status, 255) << "the new rules replace the old ones";
  EXPECT_EQ(run.output, "Loading image three.bin...\nLoading image a_4x2.y8...\n"
                        "[Open image error]: Can't open a_4x2.y8 (unsupported format)\nOpen image failed\n");
  dir.Write("other.ini", "[system]\nmax_comparison_party = 2\n");
  dir.Write("d_4x2.y8", "12345678");
  run = Run({"a_4x2.y8", "b_4x2.y8", "d_4x2.y8", "-cf", "other.ini", "-cmp"});
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_NE(run.output.find("[Compare images error]: Too many images to compare, reached a max of 2\n"),
            std::string::npos)
      << run.output;
}

TEST_F(BatchMode, BatchErrorsAreLogged) {
  const test::ProgramRunner logged(dir, "[system]\nwork_path = " + dir.path().string() +
                                            "\n[developer]\ndebug_batch_error_log = 1, batch.log\n");
  logged.Run({"a_4x2.y8", "-cls", "5", "-q"});
  EXPECT_NE(test::ReadWholeFile(dir / "batch.log").find("Can't close: invalid image index 5 (1)"),
            std::string::npos);
}

}  // namespace
}  // namespace korvanel
