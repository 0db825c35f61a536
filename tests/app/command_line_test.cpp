#include "app/command_line.h"

#include <gtest/gtest.h>

#include "support/temp_dir.h"

namespace korvanel {
namespace {

using Args = std::vector<std::string>;

ParsedCommand Only(const Args& args) {
  const ParseResult r = ParseArguments(args);
  EXPECT_TRUE(r.errors.empty()) << (r.errors.empty() ? "" : r.errors[0]);
  EXPECT_EQ(r.commands.size(), 1u);
  return r.commands.empty() ? ParsedCommand{} : r.commands[0];
}

std::vector<std::string> Errors(const Args& args) { return ParseArguments(args).errors; }

TEST(Tokenizer, QuotesGroupBlanksAndVanish) {
  EXPECT_EQ(TokenizeCommandLine("-s name \"out dir/x.raw\"  ovr\t-q"),
            (Args{"-s", "name", "out dir/x.raw", "ovr", "-q"}));
  EXPECT_EQ(TokenizeCommandLine("a\"b c\"d \"\" e"), (Args{"ab cd", "e"}));
  EXPECT_EQ(TokenizeCommandLine("   "), Args{});
}

TEST(SwitchTable, ExactAndCaseSensitive) {
  EXPECT_EQ(LookUpSwitch("--exit"), Switch::Quit);
  EXPECT_EQ(LookUpSwitch("--quit"), Switch::Quit);
  EXPECT_EQ(LookUpSwitch("-spng"), Switch::SavePng);
  EXPECT_EQ(LookUpSwitch("--reg_of_interest"), Switch::Roi);
  EXPECT_FALSE(LookUpSwitch("-Q"));
  EXPECT_FALSE(LookUpSwitch("-s "));
  EXPECT_FALSE(LookUpSwitch("-dims"));  // an opening option, not a switch
}

TEST(Parser, PlainFilesOpenAndTakeTheirOptions) {
  const ParseResult r =
      ParseArguments({"a.raw", "-dims", "640x480", "-fmt", "P,Y,8", "b.raw", "-cmp", "--open", "c.raw", "-q"});
  ASSERT_TRUE(r.errors.empty());
  ASSERT_EQ(r.commands.size(), 4u);
  EXPECT_EQ(r.commands[0].path, "a.raw");
  EXPECT_TRUE(r.commands[0].has_dimensions);
  EXPECT_EQ(r.commands[0].width, 640u);
  EXPECT_EQ(r.commands[0].height, 480u);
  EXPECT_EQ(r.commands[0].format_expression, "P,Y,8");
  EXPECT_EQ(r.commands[1].path, "b.raw");
  EXPECT_FALSE(r.commands[1].has_dimensions);
  EXPECT_EQ(r.commands[2].kind, Switch::Compare);
  EXPECT_TRUE(r.commands[2].images.empty());
  EXPECT_EQ(r.commands[3].kind, Switch::Open);
  EXPECT_EQ(r.commands[3].path, "c.raw");
  EXPECT_TRUE(r.quit);
}

TEST(Parser, RoiFormsMeanTheSameRectangle) {
  const ParsedCommand a = Only({"-roi", "10,32..110,240"});
  const ParsedCommand b = Only({"-roi", "10,32,101x209"});
  EXPECT_EQ(a.roi, (Rect{10, 32, 110, 240}));
  EXPECT_EQ(a.roi, b.roi);
  EXPECT_EQ(Only({"-roi", "-2", "0,0,1x1"}).images, (std::vector<int32_t>{-2}));
}

TEST(Parser, HkListsAreCheckedWhole) {
  EXPECT_EQ(Only({"-cls", "1, 2,-3"}).images, (std::vector<int32_t>{1, 2, -3}));
  EXPECT_TRUE(Only({"-cls", "all"}).close_all);
  for (const char* bad : {"1,1", "1,x", "-0", "+2", "1,2,3,4,5,6,7,8,9", ""}) {
    EXPECT_EQ(Errors({"-cls", bad}),
              Args{"Command line parser error: -cls expects one or more open images index"})
        << bad;
  }
}

TEST(Parser, SubOptionsFillTheCommand) {
  const ParsedCommand d = Only({"-d", "type4", "-1,-2"});
  EXPECT_EQ(d.diff_kind, DiffKind::MaskAbsDelta);
  EXPECT_EQ(d.images, (std::vector<int32_t>{-1, -2}));

  const ParsedCommand s = Only({"-s", "2", "hex_text", "planner", "big_end", "overwrite_exist", "name", "out dir/x.raw"});
  EXPECT_TRUE(s.hex_text && s.planar && s.big_endian && s.overwrite);
  EXPECT_FALSE(s.text || s.interleave);
  EXPECT_EQ(s.path, "out dir/x.raw");

  const ParsedCommand f = Only({"-flt", "fexpr", "Y:10-20", "nexpr", "0,0,0", "all_comp_qlfy", "sep_comp"});
  EXPECT_EQ(f.filter_expression, "Y:10-20");
  EXPECT_EQ(f.negation_expression, "0,0,0");
  EXPECT_TRUE(f.all_components && f.separate_components);

  const ParsedCommand e = Only({"-e", "-3", "ieval_expr", "{i*2}", "oor", "255", "out_ovrd", "0,1", "in_roi",
                                "out_ch_single", "bpp16"});
  EXPECT_EQ(e.images, (std::vector<int32_t>{-3}));
  EXPECT_EQ(e.ieval_expression, "{i*2}");
  EXPECT_EQ(e.out_of_range, "255");
  EXPECT_EQ(e.output_override, "0,1");
  EXPECT_TRUE(e.in_roi);
  EXPECT_EQ(e.channels, IEvalChannels::Single);
  EXPECT_EQ(e.output_bits, 16u);

  const ParsedCommand c = Only({"-cnv", "fmt", "I,RGB,8", "col_trans",
                                "[0.3,0.2,0.5,0], [1.3,-0.2,0.7,-128],[0.1,-0.7,-0.2,-128]", "resize", "w*2;h/2",
                                "resize_tiled", "use_def_trans"});
  EXPECT_EQ(c.format_expression, "I,RGB,8");
  ASSERT_TRUE(c.has_transform);
  EXPECT_DOUBLE_EQ(c.transform.m[1][0], 1.3);
  EXPECT_DOUBLE_EQ(c.transform.m[2][3], -128.0);
  EXPECT_EQ(c.resize, "w*2;h/2");
  EXPECT_TRUE(c.resize_tiled && c.use_default_transform);
}

TEST(Parser, RefusalsSayWhatIsWrong) {
  const std::string e = "Command line parser error: ";
  const std::string matrix_example =
      "e.g. [0.3,0.2,0.5,0],[1.3,-0.2,0.7,-128],[0.1,-0.7,-0.2,-128]";
  struct Row {
    Args args;
    Args errors;
  };
  // clang-format off
  const Row rows[] = {
      {{"-q", "b.raw"},
       {e + "b.raw is not a switch; a file to open after the first switch needs -op, --open"}},
      {{"-roi", "5,5..4,9"}, {e + "-roi illegal rectangular area (must be positive > 0)"}},
      {{"-roi", "1,1,0x4"}, {e + "-roi illegal rectangular area (must be positive > 0)"}},
      {{"-roi", "3"}, {e + "-roi can't find rectangular area"}},
      {{"-roi", "0", "1,1..2,2"}, {e + "-roi expects an open image index"}},
      {{"-cls"}, {e + "-cls expects one or more open images index"}},
      {{"-d", "1,2,3"}, {e + "-d expects 2 valid image indexes"}},
      {{"-d", "4"}, {e + "-d expects 2 valid image indexes"}},
      {{"-n", "1", "2"}, {e + "-n expects an image index"}},
      {{"-s", "name"}, {e + "-s expects file name / path after 'name'"}},
      {{"-sst", "text"}, {e + "-sst expects an open image index"}},
      {{"-flt", "fexpr"}, {e + "-flt expects filter expression string after 'filter_expr'"}},
      {{"-flt", "neg_expr", "-q"},
       {e + "-flt expects color negation expression string after 'neg_expr'"}},
      {{"-e", "ieval_expr"}, {e + "-e expects I-Eval expression string after 'ieval_expr'"}},
      {{"-e", "oor"}, {e + "-e expects out-of-range value string after 'oor'"}},
      {{"-e", "out_ovrd"}, {e + "-e expects output override list string after 'out_ovrd'"}},
      {{"-cnv"}, {e + "-cnv image format expression is expected in command"}},
      {{"-cnv", "fmt"},
       {e + "-cnv image format expression is expected after fmt_expr, format_str",
        "e.g. P,Y,8   ; I,RGB,16   ; PI,YYYYUV,8"}},
      {{"-cnv", "fmt", "P,Y,8", "col_trans"},
       {e + "-cnv expects color transform matrix after 'col_trans' (3x4).", matrix_example}},
      {{"-cnv", "fmt", "P,Y,8", "col_trans", "[1,2,3,4]"},
       {e + "-cnv can't parse transform matrix after 'col_trans' (3x4).", matrix_example}},
      {{"-cnv", "fmt", "P,Y,8", "col_trans", "[1,0,0,0.5],[0,1,0,0],[0,0,1,0]"},
       {e + "-cnv can't parse transform matrix after 'col_trans' (3x4).", matrix_example}},
      // Found by fuzzing: an offset far outside the int range was converted first.
      {{"-cnv", "fmt", "P,Y,8", "col_trans", "[1,0,0,4444090000],[0,1,0,0],[0,0,1,0]"},
       {e + "-cnv can't parse transform matrix after 'col_trans' (3x4).", matrix_example}},
      {{"-cnv", "fmt", "P,Y,8", "col_trans", "[nan,0,0,0],[0,1,0,0],[0,0,1e300,0]"},
       {e + "-cnv can't parse transform matrix after 'col_trans' (3x4).", matrix_example}},
      {{"-cnv", "fmt", "P,Y,8", "resize"},
       {e + "-cnv expects resize values in the form: width;height;x offset;y offset (offset is "
            "optional).",
        "3 examples:  [w*2;h+100;40;40]  [300;h/2] [sqrt(w*h);max(w,h);-30;100]"}},
      {{"-cnv", "fmt", "P,Y,8", "resize", "1;2;3"}, {e + "-cnv resize expects 2 or 4 value tuples."}},
      {{"-ff"}, {e + "-ff expects a path as next argument"}},
      {{"-cf", "-q"}, {e + "-cf expects a path as next argument"}},
  };
  // clang-format on
  for (const Row& row : rows) EXPECT_EQ(Errors(row.args), row.errors) << row.args.back();
  EXPECT_EQ(Errors({"-roi", "-1,1..2,2"}).size(), 2u);  // signed coordinates cannot be parsed
}

TEST(BatchFile, CommentsAndLineBreaksCarryNoMeaning) {
  test::TempDir dir;
  dir.Write("cmds.txt", "# -q\n\n-s ovr  # keep\n name\n\"a b.raw\"\n");
  Args args;
  ASSERT_TRUE(ReadBatchFile(dir.File("cmds.txt"), args));
  EXPECT_EQ(args, (Args{"-s", "ovr", "#", "keep", "name", "a b.raw"}));
  EXPECT_FALSE(ReadBatchFile(dir.File("none.txt"), args));
}

TEST(BatchFile, OverlongLinesAndArgumentFloodsAreRefused) {
  test::TempDir dir;
  dir.Write("long.txt", "a.raw\n-s name " + std::string(kMaxBatchLineLength, 'x') + "\n");
  EXPECT_EQ(ParseArguments({"-bt", dir.File("long.txt")}).errors,
            Args{"batch file line 2 is longer than 65536 characters"});
  std::string many;
  for (size_t i = 0; i <= kMaxBatchArguments; i += 10) many += "-q -q -q -q -q -q -q -q -q -q\n";
  dir.Write("many.txt", many);
  EXPECT_EQ(ParseArguments({"-bt", dir.File("many.txt")}).errors, Args{"batch file holds more than 100000 arguments"});
}

TEST(BatchFile, ReplacesTheCommandLineAndCannotNameAnother) {
  test::TempDir dir;
  dir.Write("one.txt", "a.raw -q\n");
  ParseResult r = ParseArguments({"-bt", dir.File("one.txt"), "ignored.raw"});
  ASSERT_TRUE(r.errors.empty());
  ASSERT_EQ(r.commands.size(), 1u);
  EXPECT_EQ(r.commands[0].path, "a.raw");
  EXPECT_TRUE(r.quit);
  EXPECT_EQ(r.batch_file, dir.File("one.txt"));
  dir.Write("two.txt", "-bt one.txt\n");
  r = ParseArguments({"--batch_file", dir.File("two.txt")});
  EXPECT_EQ(r.errors,
            Args{"Command line parser error: -bt batch file to parse must appear as first argument only"});
}

}  // namespace
}  // namespace korvanel
