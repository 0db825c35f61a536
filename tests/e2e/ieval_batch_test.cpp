// -e in the real program: sub-options reach the image evaluator, results are
// registered, and its messages and failures end the run as batch errors.
#include <gtest/gtest.h>

#include <regex>
#include <utility>

#include "support/program_runner.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::ProgramRun;

// The elapsed time is the one part of the output that varies.
std::string WithoutTimes(const std::string& output) {
  return std::regex_replace(output, std::regex("(Finished in|Aborted after) [0-9]+ ms"), "$1 N ms");
}

class IEvalBatch : public ::testing::Test {
 protected:
  IEvalBatch() {
    dir.Write("Korvanel.fmt",
              "<format_group>\nfile_pattern = [.*_(\\d+)x(\\d+)\\.grey]\n"
              "width = [.*_(\\d+)x(\\d+)\\.grey],$1\nheight = [.*_(\\d+)x(\\d+)\\.grey],$2\n"
              "format = [],P,Y,8\n</format_group>\n");
    dir.Write("p_4x2.grey", "ABCDEFGH");
    dir.Write("q_4x2.grey", "abcdefgh");
  }
  ProgramRun Run(const std::vector<std::string>& arguments) {
    ProgramRun run = runner.Run(arguments);
    run.output = WithoutTimes(run.output);
    return run;
  }

  test::TempDir dir;
  test::ProgramRunner runner{dir};
};

constexpr const char* kLoaded = "Loading image p_4x2.grey...\nLoading image q_4x2.grey...\n";

TEST_F(IEvalBatch, ResultsBecomeNewImagesOrReplaceTheirTargets) {
  struct Row {
    std::vector<std::string> arguments;
    int status;
    std::string tail;
  };
  const Row rows[] = {
      // The output is image 3, so closing it succeeds.
      {{"-cmp", "-e", "ieval_expr", "{(i1+i2)/2}", "-cls", "3"}, 0, "I-Eval: Finished in N ms\n"},
      // Two stages, two new images.
      {{"-e", "2", "ieval_expr", "{i+1} {i*2}", "bpp16", "out_ch_ctx_yuv", "-cls", "4"},
       0, "I-Eval: Finished in N ms\n"},
      // Replacing image 1 registers nothing new.
      {{"-e", "1", "ieval_expr", "{i;i;i}", "out_ovrd", "1", "-cls", "3"},
       255,
       "[I-Eval error]: Error(s) in I-Eval #1:\n"
       "Can't replace image 1 of a single component by a 3 channel output\n"},
      {{"-e", "1", "ieval_expr", "{i+1}", "out_ovrd", "1", "-cls", "3"},
       255, "I-Eval: Finished in N ms\nCan't close: invalid image index 3 (1)\n"},
      {{"-e", "-1", "ieval_expr", "{i}", "oor", "1;2;300"},
       255, "[Image Evaluator]: I-Eval error: '300' for comp 3 isn't valid number or bpp out-of-range\n"},
      {{"-e", "ieval_expr", "{i}", "in_roi"}, 255, "[Image Evaluator]: I-Eval error: ROI isn't active\n"},
      {{"-roi", "1,0..2,1", "-e", "ieval_expr", "{i[x-1,y]}", "in_roi", "oor", "7"},
       0, "I-Eval: Finished in N ms\n"},
      {{"-e", "ieval_expr", "{i;i;i}", "out_ch_single"},
       255,
       "[I-Eval error]: Error(s) in I-Eval #1:\n"
       "Can't force single output on 3 components expression\n"},
      {{"-e", "ieval_expr", "{i}{$Sharpen}"},
       255, "[Image Evaluator]: I-Eval error: Found name marker start $ w/o a matching end in pos 4\n"},
      {{"-e", "5", "ieval_expr", "{i}"}, 255, "Can't apply I-Eval: invalid image index (5)\n"},
  };
  for (const Row& row : rows) {
    std::vector<std::string> arguments = {"p_4x2.grey", "q_4x2.grey", "-q"};
    arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
    const ProgramRun run = Run(arguments);
    EXPECT_EQ(run.status, row.status) << row.tail << run.output;
    EXPECT_EQ(run.output, kLoaded + row.tail);
  }
}

// A three-channel result's format text is planar ("P,R,G,B,8", "P,Y,U,V,8"),
// so a save in its own packing writes one plane after the other. The RGB
// result used to be written interleaved.
TEST_F(IEvalBatch, ThreeChannelResultsSavePlaneAfterPlane) {
  const std::pair<const char*, const char*> rows[] = {{"rgb.raw", "bpp8"}, {"yuv.raw", "out_ch_ctx_yuv"}};
  for (const auto& [name, channels] : rows) {
    const ProgramRun run =
        Run({"p_4x2.grey", "-q", "-e", "ieval_expr", "{i;i+1;i+2}", channels, "-s", "name", name});
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(test::ReadWholeFile(dir / name), "ABCDEFGHBCDEFGHICDEFGHIJ") << channels;
  }
}

TEST_F(IEvalBatch, SavedExpressionsAreExpandedFromTheConfiguredList) {
  dir.Write("mine.ieval.txt", "<Halve>\ni/2\n</Halve>\n<Broken>\ni/(x-2)\n</Broken>\n");
  test::ProgramRunner configured(dir, "[system]\nwork_path = " + dir.path().string() +
                                          "\nieval_file_path = mine.ieval.txt\n");
  ProgramRun run = configured.Run({"p_4x2.grey", "-q", "-e", "ieval_expr", "{$Halve$}", "-cls", "2"});
  EXPECT_EQ(run.status, 0) << run.output;
  run = configured.Run({"p_4x2.grey", "-q", "-e", "ieval_expr", "{$Broken$}"});
  EXPECT_EQ(run.status, 255);
  EXPECT_EQ(WithoutTimes(run.output),
            "Loading image p_4x2.grey...\n"
            "[I-Eval run-time error]: Error(s) in I-Eval #1:\n"
            "Eval single channel output run-time error at (2,0)\n"
            "Divide by zero: right of 67 is zero\n"
            "I-Eval: Aborted after N ms\n");
}

}  // namespace
}  // namespace korvanel
