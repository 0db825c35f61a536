// Saving from the command line: -s with its sub-options, -sst and -spng,
// checked by the files the real program leaves and the lines it prints.
#include <gtest/gtest.h>

#include <QImage>
#include <filesystem>

#include "support/program_runner.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::ProgramRun;

class SaveBatch : public ::testing::Test {
 protected:
  SaveBatch() { dir.Write("a.y8", "ABCDEFGH"); }
  ProgramRun Run(std::vector<std::string> arguments) {
    std::vector<std::string> all = {"a.y8", "-fmt", "P,Y,8", "-dims", "4x2"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    all.push_back("-q");
    return runner.Run(all);
  }
  std::string File(const std::string& name) { return test::ReadWholeFile(dir / name); }

  test::TempDir dir;
  test::ProgramRunner runner{dir};
};

TEST_F(SaveBatch, EveryKindOfOutput) {
  const ProgramRun run = Run({"-s", "-s", "text", "-s", "hex_text", "-s", "plnr", "be", "name", "be.raw",
                              "-sst", "-spng"});
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(File("a.4x2.y8"), "ABCDEFGH");
  EXPECT_EQ(File("be.raw"), "DCBAHGFE") << "8-bit grey big-endian reverses groups of four";
  EXPECT_EQ(File("a.4x2.txt").substr(0, 68),
            "Image Y8: <0,0> .. <3,1> : 4x2 (8 pixels)\n\nofs: 00000000 <0,0> = 65\n");
  EXPECT_NE(File("a.4x2.hex.txt").find("\n\n00000000  41 42 43 44 \n00000004  45 46 47 48 \n"),
            std::string::npos);
  EXPECT_EQ(File("a.stat.txt").substr(0, 61),
            "<Luma-8>\n  Distribution        = 8\n  Bins / Samples      = 8\n");
  const QImage png(QString::fromStdString((dir / "a.png").string()));
  ASSERT_FALSE(png.isNull());
  EXPECT_EQ(png.size(), QSize(4, 2));
  EXPECT_EQ(png.pixel(3, 1), qRgb('H', 'H', 'H'));
  // The file was opened from the current folder, so the outputs go there.
  EXPECT_NE(run.output.find("Saving image(s)...\nSaved './a.4x2.y8' ("), std::string::npos)
      << run.output;
  EXPECT_NE(run.output.find("Saved 'be.raw' ("), std::string::npos);
  EXPECT_NE(run.output.find("Saving image histogram...\n"), std::string::npos);
  EXPECT_NE(run.output.find("Exported to PNG: './a.png'\n"), std::string::npos);
}

TEST_F(SaveBatch, RegionsNameTheirOutput) {
  const ProgramRun run = Run({"-roi", "1,0..2,1", "-s", "-sst", "-spng", "name", "roi.png"});
  ASSERT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(File("a_xy_1_0.2x2.y8"), "BCFG");
  EXPECT_NE(File("a_xy_1_0.2x2.stat.txt").find("Distribution        = 4\n"), std::string::npos);
  EXPECT_EQ(QImage(QString::fromStdString((dir / "roi.png").string())).size(), QSize(2, 2));
}

TEST_F(SaveBatch, ExistingFilesNeedTheOverwriteOption) {
  dir.Write("a.4x2.y8", "old");
  dir.Write("a.stat.txt", "old");
  ProgramRun run = Run({"-s"});
  EXPECT_EQ(run.status, 255);
  EXPECT_NE(run.output.find("[Save file error]: The file ./a.4x2.y8 already exists.\n"), std::string::npos)
      << run.output;
  EXPECT_EQ(File("a.4x2.y8"), "old");
  run = Run({"-sst"});
  EXPECT_EQ(run.status, 255);
  run = Run({"-s", "ovr", "-sst", "overwrite_exist"});
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(File("a.4x2.y8"), "ABCDEFGH");
  EXPECT_NE(File("a.stat.txt"), "old");
}

TEST_F(SaveBatch, InvalidReferencesAndNamesWithBlanks) {
  struct Row {
    std::vector<std::string> arguments;
    std::string line;
  };
  const Row rows[] = {
      {{"-s", "5"}, "Can't save image: invalid image index (5)\n"},
      {{"-sst", "3"}, "Can't save image statistics: invalid image index (3)\n"},
      {{"-spng", "-2"}, "Can't export image to PNG: invalid image index (-2)\n"},
  };
  for (const Row& row : rows) {
    const ProgramRun run = Run(row.arguments);
    EXPECT_EQ(run.status, 255) << row.line;
    EXPECT_NE(run.output.find(row.line), std::string::npos) << run.output;
  }
  std::filesystem::create_directory(dir / "out dir");
  const ProgramRun run = Run({"-s", "1", "text", "name", "out dir/x.txt"});
  EXPECT_EQ(run.status, 0) << run.output;
  EXPECT_EQ(File("out dir/x.txt").substr(0, 41), "Image Y8: <0,0> .. <3,1> : 4x2 (8 pixels)");
}

// Regression: with automatic naming off a window-less save ended the run with
// status 255 and not a word; nobody can be asked for a name there.
TEST_F(SaveBatch, AutoNamingOffWithoutANameFailsWithAMessage) {
  const test::ProgramRunner unnamed(dir, "[system]\nwork_path = " + dir.path().string() +
                                             "\nauto_file_naming = 0\n[developer]\n"
                                             "debug_batch_error_log = 1, batch.log\n");
  struct Row {
    const char* save;
    const char* line;
  };
  const Row rows[] = {
      {"-s", "Can't save image: automatic file naming is off, add 'name <path>' to name the output file\n"},
      {"-sst", "Can't save image statistics: automatic file naming is off, add 'name <path>' to name the output file\n"},
      {"-spng", "Can't export image to PNG: automatic file naming is off, add 'name <path>' to name the output file\n"},
  };
  for (const Row& row : rows) {
    const ProgramRun run = unnamed.Run({"a.y8", "-fmt", "P,Y,8", "-dims", "4x2", row.save, "-q"});
    EXPECT_EQ(run.status, 255) << row.save;
    EXPECT_EQ(run.output, std::string("Loading image a.y8...\n") + row.line);
  }
  const std::string log = File("batch.log");
  for (const Row& row : rows) EXPECT_NE(log.find(row.line), std::string::npos) << log;
  EXPECT_FALSE(std::filesystem::exists(dir / "a.4x2.y8"));
  EXPECT_FALSE(std::filesystem::exists(dir / "a.stat.txt"));
  EXPECT_FALSE(std::filesystem::exists(dir / "a.png"));

  const ProgramRun named = unnamed.Run({"a.y8", "-fmt", "P,Y,8", "-dims", "4x2", "-s", "name", "given.raw",
                                        "-spng", "name", "given.png", "-q"});
  EXPECT_EQ(named.status, 0) << named.output;
  EXPECT_EQ(File("given.raw"), "ABCDEFGH");
  EXPECT_TRUE(std::filesystem::exists(dir / "given.png"));
}

}  // namespace
}  // namespace korvanel
