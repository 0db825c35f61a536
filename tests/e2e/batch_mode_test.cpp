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
    dir.Write("d_4x2.y8", "12345678");
    dir.Write("blob.bin", std::string(12, 'q'));  // no rule matches .bin
    dir.Write("deep.bin", std::string(4, 'z'));
    dir.Write("other.fmt",
              "<format_group>\nfile_pattern = [.*\\.bin]\nwidth = 3\nheight = 1\nformat = [],P,Y,8\n"
              "</format_group>\n");
    dir.Write("three.bin", "xyz");
    dir.Write("other.ini", "[system]\nmax_comparison_party = 2\n");
    // A line holds several arguments; quotes and '#' belong to the argument.
    dir.Write("cmds.txt",
              "# -q would be a comment\na_4x2.y8\n\"b_4x2.y8\" -roi\n1,0..2,1 -n\n"
              "use_roi   # not a comment here\n-q\n");
    dir.Write("ok.txt", "a_4x2.y8\n\"b_4x2.y8\" -roi\n1,0..2,1 -n\nuse_roi\n-q\n");
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

// Each run ends with `status` and prints `output`: all of it, or with
// `part` only somewhere in it.
TEST_F(BatchMode, RunsEndWithTheirStatusAndTexts) {
  struct Row {
    std::vector<std::string> arguments;
    int status;
    std::string output;
    bool part = false;
  };
  const std::string a = "Loading image a_4x2.y8...\n";
  const std::string parser = "Command line parser error: ";
  const std::string no_index = parser + "-cls expects one or more open images index\n";
  const Row rows[] = {
      {{"-h"}, 0, "usage: korvanel", true},
      // Parser errors.
      {{"x.raw", "-q", "--batch_file", "cmds.txt"}, 255,
       parser + "--batch_file batch file to parse must appear as first argument only\n"},
      {{"-cls", "0"}, 255, no_index},
      {{"-cls", "21"}, 255, no_index},
      {{"-cmp", "3"}, 255, parser + "-cmp expects at least 2 images indexes to compare\n"},
      {{"-op"}, 255, parser + "-op expects a path as next argument\n"},
      {{"a.raw", "-dims", "640"}, 255,
       parser + "-dims expects a width x height (e.g. 50x100) as next argument after -dims, -wh\n"},
      {{"a.raw", "-wh", "0x480"}, 255,
       parser + "-wh image width, height must have some positive (>0) value\n"},
      {{"-q", "-dims", "4x4"}, 255,
       parser + "-dims image dimension must appear in the context of a recent opened image\n"},
      {{"a.raw", "-fmt"}, 255,
       parser + "-fmt image format expression is expected after -fmt_expr, -format_str\n"
                "e.g. P,Y,8   ; I,RGB,16   ; PI,YYYYUV,8\n"},
      {{"-bt", "missing.txt"}, 255, "can't open batch file: missing.txt\n"},
      {{"-roi"}, 255,
       parser + "-roi expects rectangular area: min_x,min_y..max_x,max_y or min_x,min_y,width x "
                "height.\ne.g. 10,32..110,240   ;   1,59,30x40\n"},
      {{"-roi", "10;32"}, 255,
       parser + "-roi can't parse rectangular area: min_x,min_y..max_x,max_y or min_x,min_y,width "
                "x height.\ne.g. 10,32,110..240   ;   1,59,30x40\n"},
      {{"-bt", "cmds.txt", "ignored.raw"}, 255, parser + "-n expects an image index\n"},
      {{"a_4x2.y8", "-cnv", "fmt", "i,rgb,8", "resize", "w*2;h;-1,0"}, 255,  // one tuple short
       parser + "-cnv resize expects 2 or 4 value tuples.\n"},
      // Opening, comparing and closing, with negative references.
      {{"a_4x2.y8", "b_4x2.y8", "-op", "c_2x2.y8", "-cmp", "1,-2", "-cls", "-1"}, 0,
       a + "Loading image b_4x2.y8...\nLoading image c_2x2.y8...\n"},
      {{"-bt", "ok.txt"}, 0,
       "New image: Successfully created New_Copy_b_4x2.xy1_0_wh2x2.y8 (HK id 3)", true},
      // The first failed command ends the run.
      {{"a_4x2.y8", "-cls", "2", "-op", "b_4x2.y8"}, 255,
       a + "Can't close: invalid image index 2 (1)\n"},
      {{"c_2x2.y8", "-op", "nothing.raw"}, 255,
       "Loading image c_2x2.y8...\n[File doesn't exist]: Can't locate nothing.raw\n"
       "Open image failed\n"},
      {{"blob.bin", "-dims", "2x2"}, 255,
       "Loading image blob.bin...\n[Open image error]: Can't open blob.bin (unsupported format)\n"
       "Can't open blob.bin with known size but none supplied format expression\n"},
      {{"blob.bin", "-fmt", "P,Y,7"}, 255, "Illegal format 'P,Y,7'\n"},
      {{"blob.bin", "-dims", "2x2", "-fmt", "i,rgb,8", "-roi", "0,0,2x2", "-roi", "1,1..2,2"}, 255,
       "Loading image blob.bin...\n"
       "Can't set ROI: image index 1 size doesn't fit the roi (size = <2,2>)\n"},
      // Diff: the latest two or the named pair.
      {{"a_4x2.y8", "b_4x2.y8", "-d", "type2"}, 0,
       "Diff: Created difference image Diff_a_4x2.y8 <--> b_4x2.y8 (", true},
      {{"a_4x2.y8", "c_2x2.y8", "-d"}, 255,
       "[Diff images error]: Diff error: left and right images are of different size\n", true},
      {{"a_4x2.y8", "-d"}, 255, a + "Can't diff: not enough open images\n"},
      {{"a_4x2.y8", "b_4x2.y8", "-d", "1,5"}, 255,
       a + "Loading image b_4x2.y8...\nCan't diff: invalid image index (1,5)\n"},
      // Filter.
      {{"a_4x2.y8", "-flt", "fexpr", "65-70", "nexpr", "0", "sep_comp"}, 0, "Filter: Applied in ",
       true},
      {{"a_4x2.y8", "-flt", "fexpr", "1;2"}, 255,
       a + "Can't filter: illegal expression (1;2 or )\n"},
      {{"a_4x2.y8", "-flt", "3", "fexpr", "*"}, 255, a + "Can't filter: invalid image index (3)\n"},
      {{"deep.bin", "-dims", "1x1", "-fmt", "P,Y,32", "-flt", "fexpr", "*"}, 255,
       "Loading image deep.bin...\nCan't filter: illegal BPP (32)\n"},
      // Convert.
      {{"a_4x2.y8", "-cnv", "fmt", "Q,Y,8"}, 255, a + "Convert error: Illegal format 'Q,Y,8'\n"},
      {{"a_4x2.y8", "-cnv", "fmt", "P,Y,8", "resize", "w-w;h"}, 255,
       a + "Convert error: 0x2 isn't legal new size\n"},
      {{"a_4x2.y8", "-cnv", "4", "fmt", "P,Y,8"}, 255,
       a + "Can't create new converted image: invalid image index (4)\n"},
      // Swapping the formats and configuration files; new rules replace the old ones.
      {{"-ff", "missing.fmt"}, 255, "Can't load format file 'missing.fmt'\n"},
      {{"-cf", "missing.ini"}, 255, "Can't load config file 'missing.ini'\n"},
      {{"-ff", "other.fmt", "-op", "three.bin", "-op", "a_4x2.y8"}, 255,
       "Loading image three.bin...\n" + a +
           "[Open image error]: Can't open a_4x2.y8 (unsupported format)\nOpen image failed\n"},
      {{"a_4x2.y8", "b_4x2.y8", "d_4x2.y8", "-cf", "other.ini", "-cmp"}, 0,
       "[Compare images error]: Too many images to compare, reached a max of 2\n", true},
  };
  for (const Row& row : rows) {
    const ProgramRun run = Run(row.arguments);
    EXPECT_EQ(run.status, row.status) << row.output << run.output;
    if (row.part) {
      EXPECT_NE(run.output.find(row.output), std::string::npos) << row.output << run.output;
    } else {
      EXPECT_EQ(run.output, row.output);
    }
  }
}

// Help wins over everything after it: later errors are never seen.
TEST_F(BatchMode, HelpPrintsTheManualAlone) {
  const ProgramRun run = Run({"a_4x2.y8", "--help", "-cls", "0"});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output.rfind("KORVANEL MANUAL", 0), 0u);
  EXPECT_NE(run.output.find("COMMAND LINE AND BATCH FILES"), std::string::npos);
}

TEST_F(BatchMode, CloseListsResolveEveryReferenceBeforeClosing) {
  // Closing 1 first would leave no image 3; both orders close a and c.
  for (const char* list : {"1,3", "-3 -1"}) {
    const ProgramRun run = Run({"a_4x2.y8", "b_4x2.y8", "c_2x2.y8", "-cls", list, "-n", "1"});
    EXPECT_EQ(run.status, 0) << list << run.output;
    EXPECT_NE(run.output.find("New image: Successfully created New_Copy_b_4x2.y8 (HK id 2)"),
              std::string::npos)
        << list << run.output;
  }
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
  dir.Write("four.bin", std::string(4, 'q'));
  const Row rows[] = {
      {{"four.bin", "-fmt", "X,Y,8", "-dims", "2x2"},
       {"Trying to set: [.*],X,Y,8", "Parse error [#0]: Illegal packing 'X'", "Status: Fail"}},
      {{"four.bin", "-fmt", "X,Y,8"},
       {"Trying to set: [.*],X,Y,8", "Parse error [#0]: Illegal packing 'X'", "Status: Fail"}},
      {{"four.bin", "-fmt", "p,y,8", "-dims", "2x2"}, {"Trying to set: [.*],P,Y,8", "Status: Success"}},
  };
  for (const Row& row : rows) {
    std::filesystem::remove(dir / "qel.log_fmt.txt");
    Run(row.arguments);
    const std::string log = test::ReadWholeFile(dir / "qel.log_fmt.txt");
    EXPECT_EQ(Occurrences(log, ": Set custom format expression\n"), 1u) << log;
    size_t at = log.find("Set custom format expression");
    for (const std::string& line : row.lines) {
      at = log.find("\n" + line + "\n", at);
      EXPECT_NE(at, std::string::npos) << line << " missing from\n" << log;
    }
  }
}

TEST_F(BatchMode, ConvertCreatesAndSavesTheNewFormat) {
  const ProgramRun run = Run({"a_4x2.y8", "-cnv", "fmt", "i,rgb,8", "resize", "w*2;h;4;0",
                              "resize_tiled", "-s", "name", "out.rgb"});
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_NE(run.output.find("Converted new image ("), std::string::npos) << run.output;
  EXPECT_NE(run.output.find("): Created Converted_Copy_a_4x2.y8 (HK id 2)"), std::string::npos)
      << run.output;
  // 8 x 2 RGB, the grey source tiled from x = 4: R = G = B = the grey value.
  const std::string rgb = test::ReadWholeFile(dir / "out.rgb");
  ASSERT_EQ(rgb.size(), 8u * 2 * 3);
  EXPECT_EQ(rgb.substr(0, 6), "AAABBB");
  EXPECT_EQ(rgb.substr(12 * 3 - 6, 6), "GGGHHH");
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
